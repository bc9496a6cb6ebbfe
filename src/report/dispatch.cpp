#include "report/dispatch.h"

#include <algorithm>
#include <string>

#include "measure/estimation.h"
#include "platform/io_status.h"
#include "report/later_tables.h"
#include "report/table_list.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

bool IsAsked(const Run& run, const TableRow& row, const Subtable& subtable) {
  return row.asked(subtable) && !(row.needs.residuals && run.inForce.PRCOMP == 'N');
}

Subtable SubtableOf(const TableRequest& request) {
  Subtable subtable;
  subtable.whole = request.Set(1) == ' ';
  subtable.number = static_cast<int>(std::clamp(request.Value(1), -1e6F, 1e6F));
  return subtable;
}

// The Keyform of single persons has a name of three parts: 7.2.1.
void SplitThreePartNumber(TableRequest& request) {
  if (request.CurrentTable != 721) return;
  request.CurrentTable = 7;
  request.TableArgument[0] = 2;
  request.TableArgumentSet[0] = 'Y';
  request.TableArgumentSet[7] = 'Y';
}

// Brings the work files up to date for the Table's writers. False when one of them has failed.
bool FlushWorkFiles(Run& run) {
  struct WorkFile {
    DirectFile& file;
    std::string_view name;
  };
  WorkStores& stores = run.stores;
  const WorkFile files[] = {
      {stores.itemLabels, "ITEM WORK FILE JJ"},
      {stores.scoredRows.File(), "PERSON SCORED FILE MM"},
      {stores.codedRows, "PERSON CODES FILE NN"},
      {stores.personNames, "PERSON NAME FILE PP"},
      {stores.personWork.File(), "PERSON WORK FILE QQ"},
  };
  for (const WorkFile& work : files) {
    if (!work.file.IsOpen()) continue;
    const int status = work.file.Flush();
    if (status == kIoOk) continue;
    run.RunIoStatus = status;
    ReportFileFailure(run, work.name, 'W');
    return false;
  }
  return true;
}

// Tells, once for each Table, that of what is asked for nothing can be printed yet.
void TellMissing(ReportContext& context, std::span<const TableRow> rows, const Subtable& subtable) {
  bool any = false;
  for (const TableRow& row : rows) {
    if (!IsAsked(context.run, row, subtable)) continue;
    if (row.print != nullptr) return;
    any = true;
  }
  std::string name = IntegerText(context.run.request.CurrentTable);
  if (!subtable.whole) name += "." + IntegerText(subtable.number);
  if (!any || !context.missingTables.insert(name).second) return;
  TellUser(context.run, " TABLE " + name + " IS NOT AVAILABLE IN THIS VERSION");
}

// The category points as a request wants them while its Table is printed, and as they were
// afterwards.
class RequestedPoints {
 public:
  RequestedPoints(Run& run, const TableNeeds& needs)
      : run_(run),
        changed_(!needs.barUnits && (run.request.Set(6) != ' ' || run.request.Set(7) != ' ')) {
    if (changed_) ComputeCategoryPoints(run_, Asked(6, HIADJ()), Asked(7, LOWADJ()));
  }
  ~RequestedPoints() {
    if (changed_) ComputeCategoryPoints(run_, HIADJ(), LOWADJ());
  }
  RequestedPoints(const RequestedPoints&) = delete;
  RequestedPoints& operator=(const RequestedPoints&) = delete;

 private:
  float HIADJ() const { return run_.settings.HIADJ; }
  float LOWADJ() const { return run_.settings.LOWADJ; }
  float Asked(int slot, float otherwise) const {
    return run_.request.Set(slot) != ' ' ? run_.request.Value(slot) : otherwise;
  }

  Run& run_;
  bool changed_;
};

void PrintRows(ReportContext& context) {
  TableRequest& request = context.run.request;
  const std::span<const TableRow> rows = RowsOf(request.CurrentTable);
  if (rows.empty()) return;
  const RequestedPoints points(context.run, rows.front().needs);
  if (rows.front().needs.freshLists) context.persons.order = context.items.order = ' ';
  const Subtable subtable = SubtableOf(request);
  TellMissing(context, rows, subtable);
  for (const TableRow& row : rows) {
    const bool wanted = IsAsked(context.run, row, subtable) && row.when(context.run, subtable);
    if (!wanted || row.print == nullptr) continue;
    context.needs = row.needs;
    request.TableSubjectIsPerson = row.needs.subject == Facet::Persons;
    request.SubtableCounter = row.subtable - 1;
    row.print(context);
  }
}

}  // namespace

void DispatchTable(ReportContext& context) {
  Run& run = context.run;
  TableRequest& request = run.request;
  request.HeadingPending = true;
  const bool ready = FlushWorkFiles(run) && (!run.complete || BeginAfterRunRequest(context));
  SplitThreePartNumber(request);
  if (ready && request.CurrentTable > 0) {
    request.SubtableCounter = 0;
    WriteConsole(run, "  Processing Table " + IntegerText(request.CurrentTable));
    PrintRows(context);
    if (run.complete) EndAfterRunRequest(context);
  }
  request.ClearSlots();
}

}  // namespace vardento
