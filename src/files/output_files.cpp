#include "files/output_files.h"

#include <iterator>

#include "files/measure_files.h"
#include "files/observation_file.h"
#include "files/response_file.h"
#include "files/score_file.h"
#include "files/step_files.h"
#include "run/messages.h"

namespace vardento {
namespace {

using Settings = ControlSettings;
constexpr auto Later = nullptr;

constexpr OutputFileRow kOutputFiles[] = {
    {'R', "Scored Response File: RFILE=", &Settings::RFILE, WriteResponseFile, OutputStage::Intake},
    {'P', "Person Measure File: PFILE=", &Settings::PFILE, WritePersonMeasureFile},
    {'I', "Item Measure File: IFILE=", &Settings::IFILE, WriteItemMeasureFile},
    {'S', "Step Measure File: SFILE=", &Settings::SFILE, WriteStepFile},
    {'J', "Item-Step Measure File: ISFILE=", &Settings::ISFILE, WriteItemStepFile},
    {'C', "Person Score File: SCFILE=", &Settings::SCFILE, WriteScoreFile},
    {'G', "Probability Curve Graph File: GRFILE=", &Settings::GRFILE, Later},
    {'D', "Distractor Count File: DISFILE=", &Settings::DISFILE, Later},
    {'1', "Item Correlation File: ICORFILE=", &Settings::ICORFILE, Later},
    {'2', "Person Correlation File: PCORFILE=", &Settings::PCORFILE, Later},
    {'Y', "Guttmanized file: GUFILE=", &Settings::GUFILE, Later},
    {'Z', "Simulated data file: SIFILE=", &Settings::SIFILE, Later},
    {'X', "Observation & Expectation File: XFILE=", &Settings::XFILE, WriteObservationFile},
};

void KeepApart(Run& run, std::string_view first, const RunFile* second) {
  if (second == nullptr) return;
  run.report.Abandon();
  FailRun(run, " " + std::string(first) + " AND " + second->caption +
                   " ARE THE SAME FILE: " + second->name);
}

}  // namespace

std::span<const OutputFileRow> OutputFiles() { return kOutputFiles; }

void EnterOutputFiles(Run& run) {
  // From the last to the first, so that the first of two is named first.
  for (auto file = std::rbegin(kOutputFiles); file != std::rend(kOutputFiles); ++file) {
    const std::string& name = run.settings.*file->name;
    if (name.empty()) continue;
    KeepApart(run, file->Variable(), run.files.Find(name, FileUse::Output));
    KeepApart(run, file->Variable(), run.files.Find(name, FileUse::Report));
    run.files.Enter(std::string(file->Variable()), name, FileUse::Output);
  }
}

void WriteOutputFiles(Run& run, OutputStage stage) {
  for (const OutputFileRow& file : kOutputFiles) {
    if (file.stage != stage || (run.settings.*file.name).empty()) continue;
    if (file.write != nullptr) {
      file.write(run);
    } else {
      TellUser(run, " " + std::string(file.Variable()) + " IS NOT AVAILABLE IN THIS VERSION");
    }
    PumpMessages(run);
  }
}

}  // namespace vardento
