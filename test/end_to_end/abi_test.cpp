#include <gmock/gmock.h>
#include <link.h>
#include <npar/component.h>

#include <cstddef>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "support/loaded_component.h"
#include "support/process.h"

// What hosts and components that were built apart agree on.
namespace {

template <typename Struct, typename Member>
std::string Place(const char* name, Member Struct::*, std::size_t offset) {
  return std::string("  ") + name + " at " + std::to_string(offset) + ", " +
         std::to_string(sizeof(Member)) + " bytes\n";
}

#define STRUCT(type) (std::string(#type ": ") + std::to_string(sizeof(type)) + " bytes\n")
#define MEMBER(type, member) Place(#member, &type::member, offsetof(type, member))

/// Sizes and offsets of the C interface on a machine of 64 bits.
std::string Layout() {
  return STRUCT(HBHost) + STRUCT(HBContext) + STRUCT(HBIterator) + STRUCT(HBProgress) +
         STRUCT(HBContainerFile) + STRUCT(HBContainerStreamKey) + STRUCT(HBXML) + STRUCT(HBWorker) +
         STRUCT(HBXMLTable) + MEMBER(HBXMLTable, size) + MEMBER(HBXMLTable, getText) +
         MEMBER(HBXMLTable, release) + STRUCT(HBHostInformation) + MEMBER(HBHostInformation, name) +
         MEMBER(HBHostInformation, version) + MEMBER(HBHostInformation, copyright) +
         MEMBER(HBHostInformation, vendor) + MEMBER(HBHostInformation, serialNumber) +
         STRUCT(HBHostTable) + MEMBER(HBHostTable, size) + MEMBER(HBHostTable, getInformation) +
         STRUCT(HBIteratorTable) + MEMBER(HBIteratorTable, size) + MEMBER(HBIteratorTable, rewind) +
         MEMBER(HBIteratorTable, next) + MEMBER(HBIteratorTable, getValue) +
         MEMBER(HBIteratorTable, readBlock) + MEMBER(HBIteratorTable, getColumn) +
         STRUCT(HBProgressTable) + MEMBER(HBProgressTable, size) + MEMBER(HBProgressTable, report) +
         MEMBER(HBProgressTable, beginPass) + STRUCT(HBContainerStreamKeyTable) +
         MEMBER(HBContainerStreamKeyTable, size) + MEMBER(HBContainerStreamKeyTable, getName) +
         STRUCT(HBContainerFileTable) + MEMBER(HBContainerFileTable, size) +
         MEMBER(HBContainerFileTable, putStream) + MEMBER(HBContainerFileTable, close) +
         STRUCT(HBWorkerTable) + MEMBER(HBWorkerTable, size) +
         MEMBER(HBWorkerTable, getTaskNumber) + STRUCT(HBContextTable) +
         MEMBER(HBContextTable, size) + MEMBER(HBContextTable, getParameters) +
         MEMBER(HBContextTable, getDataModel) + MEMBER(HBContextTable, getInputIterator) +
         MEMBER(HBContextTable, setCodes) + MEMBER(HBContextTable, newIdentifier) +
         MEMBER(HBContextTable, getOutputContainer) + MEMBER(HBContextTable, deliverMessage) +
         MEMBER(HBContextTable, getThreadCount);
}

TEST(Abi, LayoutOfTheInterfaceIsTheCommittedOne) {
  EXPECT_EQ(Layout(), FileContent("test/end_to_end/abi_layout.txt"))
      << "entries are only ever added at the end of a table";
}

TEST(Abi, SymbolsAreTheCommittedOnes) {
  // The sanitizers add symbols of their own to the library.
#ifndef __SANITIZE_ADDRESS__
  const ProcessResult outcome = RunShell("scripts/check_exports " NPAR_BUILD_DIR);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
#endif
}

// Where a library that is loaded at run time has thread_locals, the C library ends the process when
// there is no memory for those of a new thread.
TEST(Abi, ComponentHasNoThreadLocals) {
  static_cast<void>(LoadedLibrary::Instance());
  int found = 0;
  dl_iterate_phdr(
      [](dl_phdr_info* library, std::size_t, void* count) {
        if (!std::string_view(library->dlpi_name).ends_with("/libnpar.so")) return 0;
        ++*static_cast<int*>(count);
        for (int i = 0; i < library->dlpi_phnum; ++i) {
          EXPECT_NE(library->dlpi_phdr[i].p_type, ElfW(Word){PT_TLS});
        }
        return 0;
      },
      &found);
  EXPECT_EQ(found, 1);
}

TEST(Abi, HeadersAreC11AndCpp20AlikeWithoutAWarning) {
  const TemporaryFolder folder;
  const std::string unit = folder.Write("unit.c",
                                        "#include <npar/component.h>\n"
                                        "int main(void) { return (int)hb_cleanup(); }\n");
  for (const char* compiler : {"cc -std=c11 -x c", "c++ -std=c++20 -x c++"}) {
    const ProcessResult outcome =
        RunShell(std::string(compiler) +
                 " -Wall -Wextra -Wpedantic -Wconversion -Werror -Iinclude -fsyntax-only " + unit);
    EXPECT_EQ(outcome.exitCode, 0) << compiler << "\n" << outcome.out;
  }
}

}  // namespace
