#include "check/portable/image_names.h"

#include <system_error>

#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"

namespace velmor::check {

std::string nameFromFolder(const std::filesystem::path& image,
                           const std::filesystem::path& folder) {
  std::error_code error;
  const std::filesystem::path from = folder.empty() ? std::filesystem::path(".") : folder;
  const auto there = std::filesystem::weakly_canonical(image, error);
  const auto here = std::filesystem::weakly_canonical(from, error);
  const auto relative = there.lexically_relative(std::filesystem::absolute(here, error));
  // A link to an image elsewhere keeps the name it has beside the sheet.
  const bool beside = std::filesystem::equivalent(
      image.parent_path().empty() ? std::filesystem::path(".") : image.parent_path(), here, error);
  return beside || relative.empty() ? image.filename().string() : relative.string();
}

std::optional<std::string> nameForLibcdio(const std::filesystem::path& sheet,
                                          const std::string& file) {
  const std::string wanted = sheet.stem().string() + ".bin";
  if (sheet.extension() != ".cue" || file == wanted) return std::nullopt;
  return disc::printable("For libcdio (cd-info) rename this sheet or the image: it looks for " +
                         disc::inQuotes(wanted) + " beside the sheet, whatever FILE says.");
}

}  // namespace velmor::check
