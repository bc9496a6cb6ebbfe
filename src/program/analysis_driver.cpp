#include "program/analysis_driver.h"

#include "control/control_reader.h"
#include "files/output_files.h"
#include "measure/estimation.h"
#include "measure/summary.h"
#include "program/finish_run.h"
#include "report/convergence_table.h"
#include "report/phase_lines.h"
#include "report/run_summary.h"
#include "report/table_requests.h"
#include "run/messages.h"

namespace vardento {
namespace {

// A phase is over: a stop that the user asked for has had its effect.
void ClearStopRequest(Run& run) {
  PumpMessages(run);
  run.StopRequest = 0;
}

// A phase before the joint iteration is over. The next may have no end of its own either: the user
// can stop it as well, so that the next interrupt is the first again.
void ForgetStopRequest(Run& run) {
  ClearStopRequest(run);
  run.console->interruptsSeen = 0;
  run.console->ClearInterrupts();
}

void FindStartValues(Run& run, EstimationListener& listener) {
  if (!EstimateStartValues(run, listener)) {
    FailRun(run, "No Non-Extreme Persons or Items, see RFILE=");
  }
}

void EstimateMeasures(Run& run) {
  ConvergenceTable convergence(run);
  run.StopRequest = 0;
  run.phases.Enter(Phase::StartValues);
  FindStartValues(run, convergence);
  ForgetStopRequest(run);
  if (run.settings.CUTLO != 0 || run.settings.CUTHI != 0) {
    DropOutOfRange(run, convergence);
    if (run.results.rangeCut.dropped > 0) FindStartValues(run, convergence);
  }
  ForgetStopRequest(run);
  CheckConnectivity(run);
  TellConnectivity(run);
  ForgetStopRequest(run);
  run.phases.Enter(Phase::Joint);
  EstimateJoint(run, convergence);
  TellConvergence(run);
  ClearStopRequest(run);
}

void WriteFilesAndTables(Run& run) {
  WriteOutputFiles(run, OutputStage::Results);
  SaveReportFront(run);
  ReportContext context{.run = run, .persons = {}, .items = {}};
  RunRequestedTables(context);
}

}  // namespace

void MeasureRun(Run& run) {
  BeginEstimation(run);
  EstimateMeasures(run);
  run.phases.Enter(Phase::Fit);
  WriteConsole(run, "  Calculating Fit Statistics");
  ComputeFit(run);
  TellResiduals(run);
  SumUp(run);
  run.results.RunDigest = RunDigest(run);
  ComputeCategoryPoints(run, run.settings.HIADJ, run.settings.LOWADJ);
}

void AnalysisDriver(Run& run) {
  MeasureRun(run);
  run.phases.Enter(Phase::Output);
  PumpMessages(run);
  run.stores.scoredRows.Drop();
  WriteRunSummary(run);
  if (run.StopRequest != 1) WriteFilesAndTables(run);
  WriteReportText(run, "^");
  ShowRunSummary(run);
  EchoSettings(run);
  run.console->SetMenuState(MenuState::AfterRun);
  run.RunIoStatus = 0;
  run.complete = true;
}

}  // namespace vardento
