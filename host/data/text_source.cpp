#include "host/data/text_source.h"

#include "host/data/input_error.h"

namespace npar_host {

TextSource::TextSource(const std::string& path) : name(path == "-" ? "standard input" : path) {
  try {
    file = std::make_unique<WholeFile>(path);
  } catch (const FileProblem& problem) {
    throw InputError(name + ": " + problem.what + " (" + problem.reason + "); " + problem.remedy);
  }
}

void TextSource::CheckIsWhole() const {
  if (file->IsWhole()) return;
  throw InputError(name +
                   ": the file became shorter while it was read; start again once the program that "
                   "writes it has ended");
}

}  // namespace npar_host
