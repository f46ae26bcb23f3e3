#pragma once

#include <string>

namespace teskcore::filesupport {

/// A new name for a file or folder that is in the making: hidden, short whatever it will be called,
/// and of an extension under which nothing is saved, so that no listing of saved files takes it for
/// one of them. It tells which process makes it.
std::u16string MakeTempName();

/// Whether `MakeTempName` gave this name to a process that has ended, or to one that had the number
/// of this process.
bool IsAbandonedTempName(const std::u16string& name);

/// Whether a process of this number runs, and is another than this one.
bool IsOtherProcess(long number);

}  // namespace teskcore::filesupport
