#include "arguments/OptionFacts.h"

#include "arguments/Parsers.h"

namespace drevintool {
namespace {

OptionFacts factsOf(const CLI::Option& option) {
  OptionFacts facts;
  facts.name = option.get_name();
  if (!option.get_snames().empty()) facts.shortName = "-" + option.get_snames().front();
  facts.description = option.get_description();
  facts.positional = option.get_positional();
  const bool flag = option.get_items_expected_max() == 0;
  if (!flag) facts.type = option.get_type_name();
  return facts;
}

std::vector<OptionFacts> optionsOf(const CLI::App& app) {
  std::vector<OptionFacts> facts;
  for (const CLI::Option* option : app.get_options())
    facts.push_back(factsOf(*option));
  return facts;
}

}  // namespace

std::vector<SubcommandFacts> subcommandFacts() {
  const Parsers parsers;
  std::vector<SubcommandFacts> facts;
  for (const CLI::App* subcommand : parsers.app.get_subcommands({}))
    facts.push_back(
        {subcommand->get_name(), subcommand->get_description(), optionsOf(*subcommand)});
  return facts;
}

std::vector<OptionFacts> commandOptionFacts() {
  return optionsOf(Parsers().app);
}

}  // namespace drevintool
