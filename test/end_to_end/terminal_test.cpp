#include "support/terminal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "host/render/text_layout.h"
#include "support/process.h"

// What a person sees who sits at a terminal.
namespace {

using testing::HasSubstr;

std::string RunNpar(const std::string& environment, int columns, const std::string& arguments) {
  const std::string command = environment + " exec " NPAR_BUILD_DIR "/bin/npar " + arguments;
  return RunInTerminal({"/usr/bin/env", "-i", "/bin/sh", "-c", command}, columns);
}

constexpr const char* kTwoTests =
    "analyse examples/tooth_growth.csv --independent len --by supp --nominal supp"
    " --test mann-whitney --test moses";

TEST(Terminal, ReportsKeepToItsWidthLocaleAndWishes) {
  struct Case {
    const char* environment;
    int columns;
    std::size_t widest;  // of the report's lines
    bool isColoured;
    bool isAscii;
  };
  for (const Case& row : {Case{"LC_ALL=C.UTF-8 TERM=xterm", 60, 60, true, false},
                          {"LC_ALL=C.UTF-8 TERM=xterm", 80, 80, true, false},
                          {"LC_ALL=C.UTF-8 TERM=xterm", 500, 120, true, false},
                          {"LC_ALL=C.UTF-8 TERM=xterm", 0, 80, true, false},  // tells no width
                          {"LC_ALL=C.UTF-8 TERM=xterm NO_COLOR=1", 80, 80, false, false},
                          {"LC_ALL=C.UTF-8 TERM=xterm NO_COLOR=", 80, 80, true, false},
                          {"LC_ALL=C.UTF-8 TERM=dumb", 80, 80, false, false},
                          {"LC_ALL=C TERM=xterm", 80, 80, true, true},
                          {"LC_ALL=no_SUCH TERM=xterm", 80, 80, true, true}}) {
    SCOPED_TRACE(std::string(row.environment) + " " + std::to_string(row.columns));
    // Standard error, with the bar, goes elsewhere.
    const std::string shown =
        RunNpar(row.environment, row.columns, std::string(kTwoTests) + " 2>/dev/null");
    EXPECT_EQ(shown.find("\033[") != std::string::npos, row.isColoured);
    const std::string plain = WithoutEscapes(shown);
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    EXPECT_EQ(std::ranges::all_of(plain, isAscii), row.isAscii);
    EXPECT_THAT(plain, HasSubstr("Mann-Whitney U test"));
    std::istringstream lines(plain);
    std::size_t widest = 0;
    for (std::string line; std::getline(lines, line);) {
      widest = std::max(widest, npar_host::DisplayWidth(line));
    }
    EXPECT_LE(widest, row.widest);
    EXPECT_GT(widest, row.widest * 2 / 3) << "room is left";
  }
}

TEST(Terminal, TheBarNamesWhatIsInHandAndGoes) {
  struct Case {
    const char* catches;
    const char* environment;
    int columns;
    std::string arguments;
    std::string title;  // as the bar's line holds it; empty: there is no bar
  };
  const std::string oneTest = "analyse examples/sleep.csv --related drug1,drug2 --test sign";
  for (const Case& row :
       {Case{"the data", "TERM=xterm", 80, oneTest, "  0 % reading examples/sleep.csv\033[K\r"},
        {"a single test", "TERM=xterm", 80, oneTest, " 25 % Sign test\033[K\r"},
        {"tests of one order, by a locale of ASCII", "TERM=xterm", 80, kTwoTests,
         "2 tests in the order of len: Mann-Whitney U...\033[K\r"},
        {"a wide terminal", "TERM=xterm LC_ALL=C.UTF-8", 160, kTwoTests,
         "2 tests in the order of len: Mann-Whitney U test, Moses test of extreme reactions\033[K"},
        {"no room", "TERM=xterm", 30, oneTest, " 25 % \033[K\r"},
        {"a terminal that only types", "TERM=dumb", 80, oneTest, ""}}) {
    SCOPED_TRACE(row.catches);
    const std::string shown = RunNpar(row.environment, row.columns, row.arguments + " > /dev/null");
    if (row.title.empty()) {
      EXPECT_EQ(shown.find('\r'), std::string::npos) << shown;
    } else {
      EXPECT_THAT(shown, HasSubstr(row.title));
      EXPECT_THAT(shown, HasSubstr("\r\033[Knpar: inferred: "));
    }
  }
}

// A function in the program's place shows the words that the shell has made of the keys.
TEST(Terminal, BothShellsCompleteCommandsTestsOptionsWordsAndFiles) {
  const std::string program = NPAR_BUILD_DIR "/bin/npar";
  const TemporaryFolder folder;
  const std::string bashScript =
      folder.Write("npar.bash", RunProcess({program, "completion", "bash"}).out);
  folder.Write("_npar", RunProcess({program, "completion", "zsh"}).out);
  const std::string shown = "npar() { printf '<%s>' \"$@\"; echo; }\n";
  std::string keys;
  std::vector<std::string> words;
  for (const auto& [typed, completed] :
       {std::pair("an\t", "<analyse>"),  // the first one in a fresh shell
        std::pair("analyse x --test mann\t", "<analyse><x><--test><mann-whitney>"),
        std::pair("analyse --ind\t", "<analyse><--independent>"),
        std::pair("analyse examples/sl\t", "<analyse><examples/sleep.csv>"),
        std::pair("analyse x --missing li\t", "<analyse><x><--missing><listwise>"),
        std::pair("report r.xml --as js\t", "<report><r.xml><--as><json>"),
        std::pair("run --params examples/fri\t", "<run><--params><examples/friedman.xml>"),
        std::pair("tests mos\t", "<tests><moses>"),
        std::pair("completion z\t", "<completion><zsh>"),
        std::pair("tests moo\t", "<tests><moo>")}) {
    keys += std::string("npar ") + typed + "\n";
    words.push_back("\n" + std::string(completed) + "\n");
  }
  const std::vector<std::string> environment = {"/usr/bin/env", "-i", "TERM=dumb",
                                                "HOME=" + folder.Path("")};
  for (const auto& [command, start] :
       {std::pair(std::vector<std::string>{"/bin/bash", "--norc", "--noprofile", "-i"},
                  ". " + bashScript + "\n"),
        std::pair(
            std::vector<std::string>{"/usr/bin/zsh", "-f", "-i"},
            "fpath=(" + folder.Path("") + " $fpath); autoload -U compinit; compinit -u -D\n")}) {
    SCOPED_TRACE(command[0]);
    std::vector<std::string> shell = environment;
    shell.insert(shell.end(), command.begin(), command.end());
    const std::string text = RunInTerminal(shell, 200, start + shown + keys + "exit\n");
    for (const std::string& word : words) EXPECT_THAT(text, HasSubstr(word));
  }
  EXPECT_EQ(RunProcess({program, "completion", "fish"}).exitCode, 2);
}

}  // namespace
