#include "arguments/Arguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <vector>

#include "arguments/OptionChecks.h"
#include "arguments/Parsers.h"
#include "terminal/NearestName.h"

namespace drevintool {
namespace {

std::vector<std::string> subcommandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* subcommand : app.get_subcommands({}))
    names.push_back(subcommand->get_name());
  return names;
}

// What begins with the text is meant, if one alone does.
std::string nearestOption(const std::string& text, const std::vector<std::string>& names) {
  const auto begins = [&](const std::string& name) { return name.rfind(text, 0) == 0; };
  const auto first = std::find_if(names.begin(), names.end(), begins);
  const bool alone =
      first != names.end() && std::find_if(first + 1, names.end(), begins) == names.end();
  return alone ? *first : nearestName(text, names);
}

// The options of the subcommand that was begun, for a hint at the one that was meant.
std::string hintFor(const CLI::App& app, int count, const char* const* texts) {
  const std::vector<CLI::App*> begun = app.get_subcommands();
  const CLI::App& active = begun.empty() ? app : *begun.front();
  std::vector<std::string> names;
  // In the place of a subcommand a word is one, and nothing with a dash is.
  const bool word = begun.empty() && count > 1 && texts[1][0] != '-';
  if (word) names = subcommandNames(app);
  for (const CLI::Option* option : active.get_options()) {
    if (!word) names.push_back(option->get_name());
  }
  for (int i = 1; i < count; ++i) {
    const std::string text = std::string(texts[i]).substr(0, std::string(texts[i]).find('='));
    const bool known = std::find(names.begin(), names.end(), text) != names.end();
    const bool candidate = begun.empty() ? i == 1 : text.rfind("--", 0) == 0;
    const std::string nearest = candidate && !known ? nearestOption(text, names) : "";
    if (!nearest.empty()) return "; did you mean " + nearest + "?";
  }
  return "; see drevin " + (begun.empty() ? "" : active.get_name() + " ") + "--help";
}

// Of the parser's own words for an option that is given twice.
std::string whatIsWrong(const std::string& words) {
  const std::size_t at = words.find(": At Most 1 required but received ");
  return at == std::string::npos ? words : words.substr(0, at) + ": is given more than once";
}

}  // namespace

Arguments parseArguments(int count, const char* const* texts) {
  Parsers parsers;
  CLI::App& app = parsers.app;
  try {
    app.parse(count, texts);
  } catch (const CLI::CallForHelp&) {
    return TextRequest{app.help()};
  } catch (const CLI::CallForVersion& version) {
    return TextRequest{std::string(version.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    failUsage(whatIsWrong(error.what()) + hintFor(app, count, texts));
  }
  if (parsers.render.parsed()) return parsers.render.checked();
  if (parsers.sheet.parsed()) return parsers.sheet.checked();
  if (parsers.controls.parsed()) return parsers.controls.checked();
  if (parsers.script.parsed()) return parsers.script.checked();
  if (parsers.inspect.parsed()) return parsers.inspect.checked();
  if (parsers.doctor.parsed()) return parsers.doctor.checked();
  return parsers.demo.checked();
}

}  // namespace drevintool
