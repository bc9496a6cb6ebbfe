// The way in from the command line of the operating system.
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "platform/signals.h"
#include "platform/standard_streams.h"
#include "platform/terminal_console.h"
#include "program/main_run.h"

namespace vardento {
namespace {

constexpr std::string_view kHelp =
    "Usage: vardento [CONTROL [REPORT]] [VARIABLE=value ...]\n"
    "       vardento --help | --version\n"
    "Rasch measurement analysis: reads the Control File CONTROL and the data it\n"
    "names, estimates person measures, item difficulties and step calibrations,\n"
    "and writes numbered Tables to REPORT. What is left out is asked for.\n"
    "With BATCH=Y nothing is asked: both names must be given, messages go to the\n"
    "report and to standard error, and the exit status is 0 after a good run, 1\n"
    "after a bad one, 2 for a command line that can't be used.\n"
    "\n"
    "The most used variables, in the Control File or behind the names (these win):\n"
    "  NI=       number of items               DATA=     data file (else in CONTROL)\n"
    "  ITEM1=    column of the first response  NAME1=    column of the person label\n"
    "  NAMLEN=   length of the person label    XWIDE=    columns of each response\n"
    "  CODES=    the valid response codes      KEY1=     the correct responses\n"
    "  NEWSCR=   new scores for the codes      GROUPS=   items that share a scale;\n"
    "  MODELS=   R, S or F                               0: each item has its own\n"
    "  TITLE=    heading of the report         TABLES=   a 1 for each Table to print\n"
    "  PFILE=    file of person measures       IFILE=    file of item measures\n"
    "  CSV=      N fixed, Y commas, T tabs     UDECIM=   decimals of measures\n"
    "  UMEAN=    mean item difficulty          USCALE=   user units in a logit\n"
    "\n"
    "Example: vardento control.txt report.txt BATCH=Y PFILE=persons.csv CSV=Y\n";

}  // namespace

int RunProgram(int argc, char** argv) {
  HoldStandardStreams();
  const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
  if (words.size() == 1 && words[0] == "--help") {
    WriteToStandardOutput(kHelp);
    return kExitGood;
  }
  if (words.size() == 1 && words[0] == "--version") {
    WriteToStandardOutput("vardento " VARDENTO_VERSION "\n");
    return kExitGood;
  }
  InstallSignalCounters();
  TerminalConsole console;
  // Should the run fail in a way that nobody foresaw, its work files still go with it.
  try {
    Run run(console);
    return MainRun(run, words);
  } catch (const std::bad_alloc&) {
    WriteToStandardError("NOT ENOUGH MEMORY\n");
  } catch (const std::exception& fault) {
    WriteToStandardError(std::string("vardento: internal fault: ") + fault.what() + "\n");
  }
  return kExitBad;
}

}  // namespace vardento
