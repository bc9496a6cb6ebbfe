#include "analysis/power_iteration.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>

#include "analysis/residual_correlations.h"
#include "measure/entry_values.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kMostIterations = 51;
constexpr double kStillChanging = 0.003;   // of the trial vector, whose largest element is 1
constexpr std::size_t kBytesOfEntry = 40;  // what the request for memory counts for each

// Four sums side by side, so that an addition need not wait for the one before it.
double Product(const double* a, const double* b, std::size_t count) {
  double sums[4] = {};
  std::size_t k = 0;
  for (; k + 4 <= count; k += 4) {
    for (std::size_t lane = 0; lane < 4; ++lane) sums[lane] += a[k + lane] * b[k + lane];
  }
  for (; k < count; ++k) sums[0] += a[k] * b[k];
  return (sums[0] + sums[1]) + (sums[2] + sums[3]);
}

}  // namespace

CorrelationTriangle::~CorrelationTriangle() {
  if (!work_.IsOpen()) return;
  static_cast<void>(work_.Close());
  run_.workDirectory.Remove("ZSS");
}

bool CorrelationTriangle::Open(double* memory, double* row) {
  memory_ = memory;
  row_ = row;
  if (memory_ == nullptr) {
    const IoStatus created = work_.Create(run_.workDirectory.NameOf("ZSS"), sizeof(double));
    if (created != kIoOk) return Fail(created, 0, 'O');
    const std::size_t pairs = Size() * (Size() - 1) / 2;
    const IoStatus reserved = work_.Reserve(static_cast<int>(pairs));
    return reserved == kIoOk || Fail(reserved, pairs, 'W');
  }
  for (std::size_t place = 0; place + 1 < Size(); ++place) {
    if (!ReadRow(place, memory_ + FirstPair(place))) return false;
  }
  return true;
}

bool CorrelationTriangle::ReadRow(std::size_t place, double* row) {
  DirectFile& file = kept_ ? work_ : source_.file;
  const std::size_t first = FirstPair(place) + 1;
  for (std::size_t k = 0; k + place + 1 < Size(); ++k) {
    const IoStatus status = file.Read(static_cast<int>(first + k), row + k);
    if (status != kIoOk) return Fail(status, first + k, 'R');
  }
  return true;
}

double* CorrelationTriangle::Row(std::size_t place) {
  if (memory_ != nullptr) return memory_ + FirstPair(place);
  return ReadRow(place, row_) ? row_ : nullptr;
}

bool CorrelationTriangle::Keep(std::size_t place) {
  if (memory_ != nullptr) return true;
  const std::size_t first = FirstPair(place) + 1;
  for (std::size_t k = 0; k + place + 1 < Size(); ++k) {
    const IoStatus status = work_.Write(static_cast<int>(first + k), row_ + k);
    if (status != kIoOk) return Fail(status, first + k, 'W');
  }
  return true;
}

bool CorrelationTriangle::Fail(IoStatus status, std::size_t pair, char operation) {
  failure_ = {status, pair, operation};
  return false;
}

bool PowerIteration::Open() {
  const std::size_t size = run_.stores.CorrelationsOf(facet_).entries.size();
  const std::size_t vectors =
      kBytesOfEntry * static_cast<std::size_t>(ArraysOf(run_, facet_).Count());
  const std::size_t all = vectors + sizeof(double) * (size * (size - 1) / 2);
  const std::string table = IntegerText(run_.request.CurrentTable);
  const bool inMemory = block_.Allocate(run_.memory, all);
  if (!inMemory) {
    WriteConsole(run_,
                 std::to_string(all) + " bytes of memory not available, using disk work file ...");
    if (!block_.Allocate(run_.memory, vectors)) {
      run_.outputFailed = true;
      ReportMessage(run_, "  Insufficient Memory: Principal Components for Table " + table);
      return false;
    }
  }
  WriteConsole(run_, "  Calculating Principal Components for Table " + table);
  double* const first = reinterpret_cast<double*>(block_.Data());
  work_ = {first, size};
  trial_ = {first + size, size};
  diagonal_ = {first + 2 * size, size};
  std::fill(trial_.begin(), trial_.end(), 1.0);
  std::fill(diagonal_.begin(), diagonal_.end(), 1.0);
  // The row of the file's road, or the triangle, lies behind them.
  double* const rest = first + 3 * size;
  return triangle_.Open(inMemory ? rest : nullptr, rest);
}

// From equal weights. They may have nothing of the component in them, or so little that the first
// sweeps stand still: the residuals of a person often add up to about 0. An eigenvalue below the
// mean of all is not the largest; then the iteration begins once more elsewhere.
bool PowerIteration::FindNext() {
  if (!Iterate()) return false;
  const double mean = std::accumulate(diagonal_.begin(), diagonal_.end(), 0.0) /
                      static_cast<double>(diagonal_.size());
  if (eigenvalue_ >= mean - kStillChanging) return true;
  for (std::size_t i = 0; i < trial_.size(); ++i) {
    trial_[i] = (i % 2 == 0 ? 1.0 : -1.0) / static_cast<double>(i + 1);
  }
  return Iterate();
}

// False as well when the user stops before the component stands.
bool PowerIteration::Iterate() {
  int iteration = 0;
  double change = 0;
  do {
    if (!Multiply()) return false;
    change = Normalise();
    PumpMessages(run_);
  } while (++iteration < kMostIterations && change > kStillChanging && run_.StopRequest == 0);
  return run_.StopRequest == 0 || change <= kStillChanging;
}

void PowerIteration::TellFailure() {
  const CorrelationTriangle::Failure& failure = triangle_.WhatFailed();
  if (failure.status == kIoOk) return;
  TellCorrelationFailure(run_, failure.status, static_cast<long long>(failure.pair),
                         failure.operation);
}

// The correlations, with the diagonal, times the trial vector.
bool PowerIteration::Multiply() {
  std::fill(work_.begin(), work_.end(), 0.0);
  const std::size_t size = work_.size();
  for (std::size_t i = 0; i + 1 < size; ++i) {
    const double* const row = triangle_.Row(i);
    if (row == nullptr) return false;
    const std::size_t count = size - i - 1;
    work_[i] += Product(row, trial_.data() + i + 1, count);
    double* const later = work_.data() + i + 1;
    for (std::size_t k = 0; k < count; ++k) later[k] += trial_[i] * row[k];
  }
  for (std::size_t i = 0; i < size; ++i) work_[i] += trial_[i] * diagonal_[i];
  return true;
}

// The element of largest size, of several the last one.
double PowerIteration::LargestOfWork() const {
  double largest = 0;
  for (std::size_t i = work_.size(); i-- > 0;) {
    if (std::fabs(work_[i]) > std::fabs(largest)) largest = work_[i];
  }
  return largest;
}

// Makes the trial vector of the next sweep and the loadings, whose squares add up to the
// eigenvalue; the largest change of the trial vector.
double PowerIteration::Normalise() {
  const double largest = LargestOfWork();
  eigenvalue_ = std::fabs(largest);
  if (largest == 0) return 0;  // nothing is left to be found
  double squares = 0;
  for (const double element : work_) squares += element * element;
  const double scale = std::sqrt(eigenvalue_ / squares);
  double change = 0;
  for (std::size_t i = 0; i < work_.size(); ++i) {
    const double trial = work_[i] / largest;
    change = std::max(change, std::fabs(trial - trial_[i]));
    trial_[i] = trial;
    work_[i] *= scale;
  }
  return change;
}

bool PowerIteration::Deflate() {
  const std::size_t size = work_.size();
  for (std::size_t i = 0; i < size; ++i) {
    diagonal_[i] = std::clamp(diagonal_[i] - work_[i] * work_[i], -1.0, 1.0);
    trial_[i] = 1.0;
  }
  for (std::size_t i = 0; i + 1 < size; ++i) {
    double* const row = triangle_.Row(i);
    if (row == nullptr) return false;
    for (std::size_t k = 0; k + i + 1 < size; ++k) {
      row[k] = std::clamp(row[k] - work_[i] * work_[i + 1 + k], -1.0, 1.0);
    }
    if (!triangle_.Keep(i)) return false;
  }
  triangle_.EndKeeping();
  return true;
}

}  // namespace vardento
