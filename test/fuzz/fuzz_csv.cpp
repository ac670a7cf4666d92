#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "fuzz/component_run.h"
#include "host/data/csv.h"
#include "host/data/input_error.h"
#include "host/data/model.h"

/// Any bytes as a data file: refused with a place, or read with every record as wide as the header.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const int file = memfd_create("data", MFD_CLOEXEC);
  Require(file >= 0 && write(file, data, size) == static_cast<ssize_t>(size), "a file in memory");
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  try {
    npar_host::CsvReader reader(path);
    const npar_host::ModelledData read = npar_host::LoadData(reader, {});
    Require(read.data.columns.size() == reader.Names().size(), "a column for each name");
    Require(read.model.fields.size() == reader.Names().size(), "a field for each column");
    for (const npar_host::Column& each : read.data.columns) {
      Require((each.IsCoded() ? each.codes.Size() : each.numbers.Size()) == read.data.records,
              "a cell for each record");
      if (!each.isText) continue;
      each.codes.ForEach([&](std::int32_t code) {
        Require(code >= -1 && code < static_cast<std::int64_t>(each.texts.Size()), "a code");
      });
    }
  } catch (const npar_host::InputError&) {
    // refused with its place, as it should be
  }
  close(file);
  return 0;
}
