// Runs of the component on generated records, from records in a host's memory to the finished
// result document, driven line by line from standard input so that a script can alternate them with
// those of other programs:
//
//   run       one run; answers its seconds of processor time and of the clock
//   floor     what the machine needs for the work that no run can go without; answers the seconds
//             of a scan of the records, a radix sort of the first field and a walk in its order
//   document  answers with the result document of the last run, after its length in a line
//   columns   writes the fields, each as a file of doubles, into the folder named behind it
//   csv       writes the records as comma-separated values: digits and path stand behind it
//   read      reads the file named behind it as `npar run` does; answers seconds as `run` does
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
                const GeneratedData& data) {
  npar_host::RunHost host(parameters, data.modelText);
  npar_host::Component component(library, host.Context());
  Require(component.Configure(), host);
  host.OfferRecords(data.modelText, data.rows);
  Require(component.BeginExecution(host.Progress()), host);
  return host.TakeStream();
}

void WriteColumns(const npar_host::RowStore& rows, const std::string& folder) {
  for (std::size_t column = 0; column < rows.Width(); ++column) {
    std::ofstream file(folder + "/column" + std::to_string(column), std::ios::binary);
    for (std::size_t row = 0; row < rows.Size(); ++row) {
      file.write(reinterpret_cast<const char*>(rows.Row(row) + column), sizeof(double));
    }
    if (!file.flush()) throw std::runtime_error("cannot write into " + folder);
  }
}

void WriteCsv(const npar_host::RowStore& rows, int digits, const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  for (std::size_t column = 0; column < rows.Width(); ++column) {
    file << (column == 0 ? "c" : ",c") << column;
  }
  for (std::size_t row = 0; row < rows.Size(); ++row) {
    for (std::size_t column = 0; column < rows.Width(); ++column) {
      char text[32];
      const auto written = std::to_chars(text, std::end(text), rows.Row(row)[column],
                                         std::chars_format::general, digits);
      file.put(column == 0 ? '\n' : ',').write(text, written.ptr - text);
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

void Serve(const npar_host::ComponentLibrary& library, const std::string& parameters,
           const GeneratedData& data) {
  std::string document;
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    std::string order;
    std::string path;
    int digits = 0;
    words >> order;
    if (order == "csv") words >> digits;
    words >> std::ws;
    std::getline(words, path);
    if (order == "run") {
      const Stopwatch watch;
      document = Run(library, parameters, data);
      watch.Answer();
    } else if (order == "floor") {
      const Floor floor = MeasureFloor(data.rows);
      std::cout << floor.scan << ' ' << floor.sort << ' ' << floor.walk << std::endl;
    } else if (order == "document") {
      std::cout << document.size() << '\n' << document << std::flush;
    } else if (order == "columns") {
      WriteColumns(data.rows, path);
      std::cout << data.rows.Width() << std::endl;
    } else if (order == "csv") {
      WriteCsv(data.rows, digits, path);
      std::cout << data.rows.Width() << std::endl;
    } else if (order == "read") {
      const Stopwatch watch;
      npar_host::CsvReader reader(path);
      const npar_host::ModelledData read = npar_host::LoadData(reader, {});
      watch.Answer();
    } else if (order == "scan") {
      std::cout << MeasureCsvScan(path) << std::endl;
    } else if (order == "memory") {
      std::cout << LargestMemory() << ' ' << data.rows.Size() * data.rows.Width() * sizeof(double)
                << std::endl;
    } else {
      throw std::runtime_error("no such order: " + line);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::string caseName;
  DataShape shape{.records = 100000};
  CLI::App app("Runs of the component on generated records");
  app.add_option("case", caseName, "mann-whitney, friedman, ...")->required();
  app.add_option("--records", shape.records);
  app.add_flag("--coarse", shape.isCoarse, "about a hundred distinct values");
  app.add_flag("--missing", shape.hasMissing, "one value in twenty is missing");
  app.add_flag("--weights", shape.hasWeight, "frequency weights from 1 to 5");
  CLI11_PARSE(app, argc, argv);
  try {
    const BenchCase* benchCase = FindCase(caseName);
    if (benchCase == nullptr) throw std::runtime_error("no such case: " + caseName);
    shape.fields = benchCase->fields;
    shape.groups = benchCase->groups;
    const npar_host::ComponentLibrary library(npar_host::ComponentLibrary::DefaultPath());
    Serve(library, ParametersOf(*benchCase), Generate(shape));
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 2;
  }
  return 0;
}
