// Runs of the component on generated records, from records in a host's memory to the finished
// result document, driven line by line from standard input so that a script can alternate them with
// those of other programs:
//
//   run       one run; answers its seconds of processor time and of the clock
//   runs      as many runs as the number behind it says; answers as `run` does
//   threads   further runs may use the number of threads named behind it
//   floor     what the machine needs for the work that no run can go without; answers the seconds
//             of a scan of the records, a radix sort of the first field and a walk in its order
//   document  answers with the result document of the last run, after its length in a line
//   columns   writes the fields, each as a file of doubles, into the folder named behind it
//   csv       writes the records as comma-separated values: digits and path stand behind it
//   read      reads a file as `npar run` does; answers seconds as `run` does. Behind it stand
//   threads,
//             how many of the first fields are named as for `npar analyse` (0: none is), and the
//             path
//   scan      what the machine needs for that; answers its seconds of processor time
//   memory    answers the largest memory of the process so far, and that of the records, in bytes

#include <CLI/CLI.hpp>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/cases.h"
#include "bench/floor.h"
#include "bench/generated_data.h"
#include "host/data/csv.h"
#include "host/data/model.h"
#include "host/loader/component.h"
#include "host/loader/run_host.h"

namespace {

/// Processor time beside the clock: on a machine that others use only the first one tells.
class Stopwatch {
 public:
  void Answer() const {
    const double seconds = static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC;
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - clock;
    std::cout << seconds << ' ' << elapsed.count() << std::endl;
  }

 private:
  std::clock_t processor = std::clock();
  std::chrono::steady_clock::time_point clock = std::chrono::steady_clock::now();
};

void Require(std::uint32_t code, const npar_host::RunHost& host) {
  if (code == 0) return;
  std::string text = "the run failed with code " + std::to_string(code);
  for (const auto& message : host.Messages()) text += ", message " + std::to_string(message.code);
  throw std::runtime_error(text);
}

std::string Run(const npar_host::ComponentLibrary& library, const std::string& parameters,
                const GeneratedData& data, std::uint32_t threads) {
  npar_host::RunHost host(parameters, data.modelText);
  host.AllowThreads(threads);
  npar_host::Component component(library, host.Context());
  Require(component.Configure(), host);
  const npar_host::RecordView records = data.View();
  host.OfferRecords(data.modelText, records);
  Require(component.BeginExecution(host.Progress()), host);
  return host.TakeStream();
}

void WriteColumns(const GeneratedData& data, const std::string& folder) {
  for (std::size_t i = 0; i < data.columns.size(); ++i) {
    std::ofstream file(folder + "/column" + std::to_string(i), std::ios::binary);
    file.write(reinterpret_cast<const char*>(data.columns[i].data()),
               static_cast<std::streamsize>(data.Records() * sizeof(double)));
    if (!file.flush()) throw std::runtime_error("cannot write into " + folder);
  }
}

void WriteCsv(const GeneratedData& data, int digits, const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  for (std::size_t i = 0; i < data.columns.size(); ++i) file << (i == 0 ? "c" : ",c") << i;
  for (std::size_t record = 0; record < data.Records(); ++record) {
    for (std::size_t i = 0; i < data.columns.size(); ++i) {
      char text[32];
      const auto written = std::to_chars(text, std::end(text), data.columns[i][record],
                                         std::chars_format::general, digits);
      file.put(i == 0 ? '\n' : ',').write(text, written.ptr - text);
    }
  }
  if (!(file << '\n').flush()) throw std::runtime_error("cannot write " + path);
}

/// Of this program alone: the figure of getrusage begins with that of the program that started it.
std::int64_t LargestMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::stoll(line.substr(6)) * 1024;  // in kibibytes
  }
  throw std::runtime_error("/proc/self/status does not tell the largest memory");
}

void Read(const std::string& path, std::size_t threads, std::size_t named) {
  const Stopwatch watch;
  npar_host::CsvReader reader(path, {.threads = threads});
  std::vector<npar_host::FieldSpec> specs;
  for (std::size_t i = named; named > 0 && i < reader.Names().size(); ++i) {
    npar_host::FieldSpec& spec = specs.emplace_back();
    spec.name = reader.Names()[i];
    spec.role = npar_host::Role::None;
  }
  const npar_host::ModelledData read = npar_host::LoadData(reader, specs);
  watch.Answer();
}

void Serve(const npar_host::ComponentLibrary& library, const std::string& parameters,
           const GeneratedData& data, std::uint32_t threads) {
  std::string document;
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    std::string order;
    std::string path;
    int digits = 0;
    int runCount = 1;
    words >> order;
    std::size_t readers = 0;
    std::size_t named = 0;
    if (order == "csv") words >> digits;
    if (order == "read") words >> readers >> named;
    if (order == "threads") words >> threads;
    if (order == "runs") words >> runCount;
    words >> std::ws;
    std::getline(words, path);
    if (order == "run" || order == "runs") {
      const Stopwatch watch;
      for (int i = 0; i < runCount; ++i) document = Run(library, parameters, data, threads);
      watch.Answer();
    } else if (order == "threads") {
      std::cout << threads << std::endl;
    } else if (order == "floor") {
      const Floor floor = MeasureFloor(data.columns);
      std::cout << floor.scan << ' ' << floor.sort << ' ' << floor.walk << std::endl;
    } else if (order == "document") {
      std::cout << document.size() << '\n' << document << std::flush;
    } else if (order == "columns") {
      WriteColumns(data, path);
      std::cout << data.columns.size() << std::endl;
    } else if (order == "csv") {
      WriteCsv(data, digits, path);
      std::cout << data.columns.size() << std::endl;
    } else if (order == "read") {
      Read(path, readers, named);
    } else if (order == "scan") {
      std::cout << MeasureCsvScan(path) << std::endl;
    } else if (order == "memory") {
      std::cout << LargestMemory() << ' ' << data.Records() * data.columns.size() * sizeof(double)
                << std::endl;
    } else {
      throw std::runtime_error("no such order: " + line);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::string caseName;
  std::size_t fields = 0;
  DataShape shape{.records = 100000};
  std::uint32_t threads = 1;
  bool isExtended = false;
  CLI::App app("Runs of the component on generated records");
  app.add_option("case", caseName, "mann-whitney, friedman, ...")->required();
  app.add_option("--records", shape.records);
  app.add_option("--fields", fields, "instead of those of the case");
  app.add_option("--threads", threads, "threads that a run may use");
  app.add_flag("--coarse", shape.isCoarse, "about a hundred distinct values");
  app.add_flag("--missing", shape.hasMissing, "one value in twenty is missing");
  app.add_flag("--weights", shape.hasWeight, "frequency weights from 1 to 5");
  app.add_flag("--extended", isExtended, "with the extended figures");
  CLI11_PARSE(app, argc, argv);
  try {
    const BenchCase* benchCase = FindCase(caseName);
    if (benchCase == nullptr) throw std::runtime_error("no such case: " + caseName);
    shape.fields = fields > 0 ? fields : benchCase->fields;
    shape.groups = benchCase->groups;
    const npar_host::ComponentLibrary library(npar_host::ComponentLibrary::DefaultPath());
    Serve(library, ParametersOf(*benchCase, isExtended), Generate(shape), threads);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 2;
  }
  return 0;
}
