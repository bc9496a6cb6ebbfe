#include "program/analysis_driver.h"

#include "control/control_reader.h"
#include "files/output_files.h"
#include "measure/estimation.h"
#include "program/finish_run.h"
#include "report/convergence_table.h"
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

void EstimateMeasures(Run& run) {
  ConvergenceTable convergence(run);
  run.StopRequest = 0;
  run.phases.Enter(Phase::StartValues);
  EstimateStartValues(run, convergence);
  ForgetStopRequest(run);
  const bool cut = run.settings.CUTLO != 0 || run.settings.CUTHI != 0;
  if (cut && DropOutOfRange(run, convergence)) EstimateStartValues(run, convergence);
  ForgetStopRequest(run);
  CheckConnectivity(run);
  ForgetStopRequest(run);
  run.phases.Enter(Phase::Joint);
  EstimateJoint(run, convergence);
  ClearStopRequest(run);
}

void WriteFilesAndTables(Run& run, const FitSummary& summary) {
  WriteOutputFiles(run, OutputStage::Results);
  SaveReportFront(run);
  run.settings.iselectMark = run.settings.pselectMark = false;
  ReportContext context{.run = run, .summary = summary, .persons = {}, .items = {}};
  RunRequestedTables(context);
}

}  // namespace

void AnalysisDriver(Run& run) {
  EstimateMeasures(run);
  run.phases.Enter(Phase::Fit);
  const FitSummary summary = ComputeFit(run);
  run.phases.Enter(Phase::Output);
  PumpMessages(run);
  run.stores.responseMatrix.Free();
  ComputeCategoryPoints(run, run.settings.HIADJ, run.settings.LOWADJ);
  WriteRunSummary(run, summary);
  if (run.StopRequest != 1) WriteFilesAndTables(run, summary);
  WriteReportText(run, "^");
  ShowRunSummary(run);
  EchoSettings(run);
  run.console->SetMenuState(MenuState::AfterRun);
  run.RunIoStatus = 0;
  run.complete = true;
}

}  // namespace vardento
