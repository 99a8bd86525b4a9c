#include "prepare/FixNotes.h"

#include "terminal/NumberText.h"

namespace drevintool {
namespace {

std::string shareText(std::uint64_t count, std::uint64_t all, const std::string& what) {
  return std::to_string(count) + " of " + std::to_string(all) + " " + what;
}

std::string text(float value) {
  return numberText(static_cast<double>(value));
}

}  // namespace

std::string backgroundNote(const BackgroundFix& fix, std::optional<float> depth,
                           std::uint64_t count, std::uint64_t all, const std::string& what,
                           std::optional<float> ordinary) {
  const std::string option =
      "--fix-background " + (fix.farthest ? std::string("far") : text(fix.depth)) + ": ";
  if (!depth) return option + "nothing was changed, for no depth is a distance";
  const std::string why = ordinary ? ", as " + text(*ordinary) + " is background here," : "";
  return option + shareText(count, all, what) + " had no depth" + why + " and got " + text(*depth);
}

std::string edgesNote(std::uint64_t count, std::uint64_t all) {
  return "--fix-edges: " + shareText(count, all, "pixels") +
         " had averaged depths and got that of the closer side";
}

std::string firefliesNote(float most, std::uint64_t count, std::uint64_t all,
                          const std::string& what) {
  return "--clamp-fireflies " + text(most) + ": " + shareText(count, all, what) +
         " were brighter and were dimmed";
}

std::string noColoursNote(float most, const std::string& what) {
  return "--clamp-fireflies " + text(most) + ": nothing was changed, for " + what +
         " has no colours R, G and B";
}

}  // namespace drevintool
