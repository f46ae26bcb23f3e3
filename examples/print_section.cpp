// Prints a section of a mode as a table: its parameters with their ranges, the effects that they
// drive, and what becomes of each effect parameter at the least, the middle and the greatest
// amount. For a host's author who wants to see what a control will do before wiring it up.

#include <iostream>
#include <string>

#include "host/catalogue/mode_catalogue.h"
#include "host/catalogue/section_table.h"
#include "host/session/host.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "Usage: print_section MODE SECTION, for example: print_section dialog volume\n";
    return 2;
  }
  const orvelhost::Host host;
  if (!orvelhost::IsMode(argv[1])) {
    std::cerr << "print_section: there is no mode '" << argv[1] << "'\n";
    return 2;
  }
  for (const auto& definition : orvelhost::MakeSections(std::string(argv[1]))) {
    if (orvelhost::ShortSectionName(definition.GetModelID()) != argv[2]) continue;
    std::cout << orvelhost::ToText(orvelhost::MakeSectionTable(definition));
    return 0;
  }
  std::cerr << "print_section: the mode '" << argv[1] << "' has no section '" << argv[2] << "'\n";
  return 2;
}
