#include "analysis/residual_correlations.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <string>

#include "analysis/residual_file.h"
#include "analysis/residual_pairs.h"
#include "measure/category_model.h"
#include "measure/entry_values.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::size_t kLargestListed = 10;
constexpr char kFileName[] = "CORRELATION WORK FILE";

std::string_view StemOf(Facet facet) { return facet == Facet::Persons ? "ZWW" : "ZTT"; }

std::vector<int> ActiveEntries(const Run& run, Facet facet) {
  const Array1<StatusByte> status = ArraysOf(run, facet).status;
  std::vector<int> entries;
  for (int i = 1; i <= status.Size(); ++i) {
    if (IsActive(status[i])) entries.push_back(i);
  }
  return entries;
}

// Of a chain of entries that are all alike the pairs that name an entry anew are enough.
bool IsOneOfAlike(const std::vector<ResidualCorrelation>& largest,
                  const ResidualCorrelation& pair) {
  const auto names = [&largest](int entry) {
    return std::any_of(largest.begin(), largest.end(), [entry](const ResidualCorrelation& listed) {
      return listed.r == 1.0 && (listed.first == entry || listed.second == entry);
    });
  };
  return pair.r == 1.0 && names(pair.first) && names(pair.second);
}

void EnterLargest(std::vector<ResidualCorrelation>& largest, const ResidualCorrelation& pair) {
  const double size = std::fabs(pair.r);
  const bool full = largest.size() == kLargestListed;
  if (full && std::fabs(largest.back().r) > size) return;
  if (IsOneOfAlike(largest, pair)) return;
  if (full) largest.pop_back();
  const auto place = std::find_if(largest.begin(), largest.end(), [size](const auto& listed) {
    return std::fabs(listed.r) <= size;
  });
  largest.insert(place, pair);
}

class CorrelationPass {
 public:
  CorrelationPass(Run& run, Facet facet)
      : run_(run),
        facet_(facet),
        store_(run.stores.CorrelationsOf(facet)),
        terms_(TermsOf(store_.entries.size())) {}

  bool Compute() {
    store_.complete = false;
    store_.largest.clear();
    WriteConsole(run_, "  Calculating " +
                           std::string(TrimRight(SingularLabel(run_.settings, facet_))) +
                           " Correlations");
    if (!OpenFile()) return false;
    ResidualPairs pairs(run_, facet_, store_.entries, store_.others);
    for (std::size_t place = 0; place + 1 < store_.entries.size(); ++place) {
      PumpMessages(run_);
      if (run_.StopRequest == 1) return false;
      if (!pairs.SumWithLater(place)) return false;
      if (!WriteRow(place, pairs)) return false;
      ShowProgress(run_, static_cast<int>(record_), static_cast<int>(terms_));
    }
    const IoStatus flushed = store_.file.Flush();
    if (flushed != kIoOk) return Fail(flushed, 'W');
    store_.complete = true;
    return true;
  }

 private:
  static long long TermsOf(std::size_t entries) {
    const auto n = static_cast<long long>(entries);
    return n * (n - 1) / 2;
  }

  // The room is taken first, so that a lack of it shows before the work.
  bool OpenFile() {
    run_.RunIoStatus =
        store_.file.Create(run_.workDirectory.NameOf(StemOf(facet_)), sizeof(double));
    if (run_.RunIoStatus != kIoOk) return Fail(run_.RunIoStatus, 'O');
    if (terms_ == 0) return true;
    if (terms_ <= INT_MAX) {
      run_.RunIoStatus = store_.file.Reserve(static_cast<int>(terms_));
      if (run_.RunIoStatus == kIoOk) return true;
      ReportFileFailure(run_, kFileName, 'W');
    }
    Discard();
    ReportMessage(run_, IntegerText(static_cast<int>(store_.entries.size())) +
                            " correlation terms are too many for available disk space");
    return false;
  }

  bool WriteRow(std::size_t place, const ResidualPairs& pairs) {
    for (std::size_t later = place + 1; later < store_.entries.size(); ++later) {
      const double r = CorrelationOf(pairs.With(later));
      EnterLargest(store_.largest, {store_.entries[place], store_.entries[later], r});
      const IoStatus written = store_.file.Write(static_cast<int>(++record_), &r);
      if (written != kIoOk) return Fail(written, 'W');
    }
    return true;
  }

  bool Fail(IoStatus status, char operation) {
    Discard();
    TellCorrelationFailure(run_, status, record_, operation);
    return false;
  }

  void Discard() {
    run_.outputFailed = true;
    static_cast<void>(store_.file.Close());
    run_.workDirectory.Remove(StemOf(facet_));
  }

  Run& run_;
  Facet facet_;
  CorrelationStore& store_;
  long long terms_;
  long long record_ = 0;  // written so far
};

}  // namespace

void TellCorrelationFailure(Run& run, IoStatus status, long long record, char operation) {
  run.RunIoStatus = status;
  run.outputFailed = true;
  WriteConsole(run, " CORRELATION WORK FILE FAILURE AT RECORD = " + std::to_string(record));
  ReportFileFailure(run, kFileName, operation);
}

bool CorrelateResiduals(Run& run, Facet facet) {
  CorrelationStore& store = run.stores.CorrelationsOf(facet);
  std::vector<int> entries = ActiveEntries(run, facet);
  std::vector<int> others = ActiveEntries(run, OtherFacet(facet));
  if (store.complete && store.entries == entries && store.others == others) return true;
  if (!MakeResidualFile(run)) return false;
  store.entries = std::move(entries);
  store.others = std::move(others);
  return CorrelationPass(run, facet).Compute();
}

const std::vector<ResidualCorrelation>& LargestCorrelations(Run& run, Facet facet) {
  return run.stores.CorrelationsOf(facet).largest;
}

}  // namespace vardento
