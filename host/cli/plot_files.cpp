#include "host/cli/plot_files.h"

#include <filesystem>

#include "host/cli/output.h"
#include "host/os/run_program.h"
#include "host/os/utf8_path.h"
#include "host/render/html/test_plots.h"

namespace npar_host {
namespace {

namespace fs = std::filesystem;

constexpr int kZoom = 2;            // as large as print wants it
constexpr int kMostPixels = 32767;  // of a side, in the library that the converter draws with

// Writes a PNG beside the SVG. False where there is no converter.
bool ConvertToPng(const fs::path& svg) {
  std::string image;
  const ProgramOutcome outcome = RunProgram(
      {"rsvg-convert", "--zoom=" + std::to_string(kZoom), "-b", "white", Utf8Name(svg)}, image);
  if (outcome == ProgramOutcome::NotFound) return false;
  if (outcome == ProgramOutcome::Failed) {
    throw OutputError("rsvg-convert could not turn " + Utf8Name(svg) + " into PNG");
  }
  fs::path png = svg;
  png.replace_extension(".png");
  Publish(Utf8Name(png), image);
  return true;
}

}  // namespace

void PlotWriter::Write(const std::string& folder, const ResultDocument& document) {
  std::vector<PlotFile> plots = PlotFiles(document);
  CallFiles all = files;
  for (PlotFile& file : plots) {
    // Other documents may have tests and fields that are called the same in file names.
    const std::string stem = file.name.substr(0, file.name.rfind('.'));
    for (int number = 2; !names.insert(file.name).second; ++number) {
      file.name = stem + "-" + std::to_string(number) + ".svg";
    }
    fs::path path = Utf8Path(folder) / Utf8Path(file.name);
    all.written.push_back(Utf8Name(path));
    all.written.push_back(Utf8Name(path.replace_extension(".png")));
  }
  CheckOutputs(all);
  MakeFolder(folder);
  bool isConverter = true;
  for (const PlotFile& file : plots) {
    const fs::path path = Utf8Path(folder) / Utf8Path(file.name);
    Publish(Utf8Name(path), file.svg);
    if (!isConverter) continue;
    if (kZoom * file.longestSide <= kMostPixels) {
      isConverter = ConvertToPng(path);
    } else {
      Tell("npar: " + Utf8Name(path) + " is too large to be written as PNG too");
    }
  }
}

}  // namespace npar_host
