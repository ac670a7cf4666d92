#include "host/cli/plot_files.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>

#include "host/cli/output.h"
#include "host/render/html/test_plots.h"

namespace npar_host {
namespace {

namespace fs = std::filesystem;

enum class Conversion { Done, Failed, NoConverter };

// Twice as large as it stands in a page, as print wants it.
Conversion ConvertToPng(const fs::path& svg) {
  fs::path png = svg;
  png.replace_extension(".png");
  std::array<std::string, 6> words = {"rsvg-convert", "--zoom=2",          "-b",
                                      "white",        "-o" + png.string(), svg.string()};
  std::array<char*, words.size() + 1> arguments{};
  for (std::size_t i = 0; i < words.size(); ++i) arguments[i] = words[i].data();
  pid_t child = 0;
  const int error = posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ);
  if (error != 0) return Conversion::NoConverter;
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return Conversion::Failed;
  }
  constexpr int kNotFound = 127;  // where the child finds that there is no such program
  if (WIFEXITED(status) && WEXITSTATUS(status) == kNotFound) return Conversion::NoConverter;
  return status == 0 ? Conversion::Done : Conversion::Failed;
}

}  // namespace

void WritePlots(const std::string& folder, const ResultDocument& document) {
  MakeFolder(folder);
  Conversion last = Conversion::Done;
  for (const PlotFile& file : PlotFiles(document)) {
    const fs::path path = fs::path(folder) / file.name;
    Publish(path.string(), file.svg);
    if (last == Conversion::NoConverter) continue;
    last = ConvertToPng(path);
    if (last == Conversion::Failed) {
      throw OutputError("rsvg-convert could not turn " + path.string() + " into PNG");
    }
  }
}

}  // namespace npar_host
