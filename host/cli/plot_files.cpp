#include "host/cli/plot_files.h"

#include <filesystem>

#include "host/cli/output.h"
#include "host/os/run_program.h"
#include "host/os/utf8_path.h"
#include "host/render/html/test_plots.h"

namespace npar_host {
namespace {

namespace fs = std::filesystem;

// Twice as large as it stands in a page, as print wants it.
ProgramOutcome ConvertToPng(const fs::path& svg) {
  fs::path png = svg;
  png.replace_extension(".png");
  return RunProgram(
      {"rsvg-convert", "--zoom=2", "-b", "white", "-o" + Utf8Name(png), Utf8Name(svg)});
}

}  // namespace

void WritePlots(const std::string& folder, const ResultDocument& document) {
  MakeFolder(folder);
  ProgramOutcome last = ProgramOutcome::Done;
  for (const PlotFile& file : PlotFiles(document)) {
    const fs::path path = Utf8Path(folder) / Utf8Path(file.name);
    Publish(Utf8Name(path), file.svg);
    if (last == ProgramOutcome::NotFound) continue;
    last = ConvertToPng(path);
    if (last == ProgramOutcome::Failed) {
      throw OutputError("rsvg-convert could not turn " + Utf8Name(path) + " into PNG");
    }
  }
}

}  // namespace npar_host
