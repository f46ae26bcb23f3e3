#pragma once

#include <csignal>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvel::test {

/// Runs `work` in a process of its own, and kills that when `observe` comes back.
template <typename Work, typename Observe>
void KillWhile(const Work& work, const Observe& observe) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    work();
    for (;;) pause();
  }
  observe();
  kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status)) << "the process gave up by itself";
}

}  // namespace orvel::test
