#include <cstring>
#include <exception>
#include <iostream>
#include <string>

#include "host/factory/factory_documents.h"
#include "host/factory/factory_tables.h"

namespace {

constexpr const char* kUsage =
    "Usage: orvel_factory_documents FOLDER    writes the documents that the library ships\n"
    "       orvel_factory_documents --tables  prints their design as Markdown tables\n";

constexpr int kFailed = 1;
constexpr int kWrongUse = 2;

int Run(const char* argument) {
  if (std::strcmp(argument, "--tables") == 0) {
    for (const std::string& table : orvelhost::FactoryTables()) {
      std::cout << table << "\n";
    }
    return std::cout.flush() ? 0 : kFailed;
  }
  std::string error;
  if (!orvelhost::WriteFactoryDocuments(argument, error)) {
    std::cerr << "orvel_factory_documents: " << error << "\n";
    return kFailed;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || std::strcmp(argv[1], "--help") == 0) {
    (argc == 2 ? std::cout : std::cerr) << kUsage;
    return argc == 2 ? 0 : kWrongUse;
  }
  try {
    return Run(argv[1]);
  } catch (const std::exception& error) {
    std::cerr << "orvel_factory_documents: " << error.what() << "\n";
    return kFailed;
  }
}
