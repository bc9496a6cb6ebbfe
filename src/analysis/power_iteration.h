// Power iteration with deflation over the correlations of one side's residuals (Hotelling 1933).
#pragma once

#include <span>
#include <vector>

#include "platform/direct_file.h"
#include "platform/memory.h"
#include "run/facet.h"
#include "run/run.h"

namespace vardento {

// The correlations while components are taken out of them: packed rows (i, j > i), in memory, or,
// where they don't fit, in the file that they come from and then in a work file of their own.
class CorrelationTriangle {
 public:
  CorrelationTriangle(Run& run, Facet facet)
      : run_(run), source_(run.stores.CorrelationsOf(facet)) {}
  ~CorrelationTriangle();
  CorrelationTriangle(const CorrelationTriangle&) = delete;
  CorrelationTriangle& operator=(const CorrelationTriangle&) = delete;

  // `memory` takes all pairs, or none and stays null; `row` takes the longest row.
  bool Open(double* memory, double* row);
  // What went wrong when one of the others was false.
  struct Failure {
    IoStatus status = kIoOk;
    std::size_t pair = 0;
    char operation = ' ';
  };
  const Failure& WhatFailed() const { return failure_; }
  // The correlations of the entry at `place` (from 0) with those behind it; places in ascending
  // order. Null when a file fails. What is changed in them stays after Keep.
  double* Row(std::size_t place);
  bool Keep(std::size_t place);
  // Every row has been kept once: from now on rows are read back from there.
  void EndKeeping() { kept_ = kept_ || work_.IsOpen(); }

 private:
  std::size_t Size() const { return source_.entries.size(); }
  // Of the first pair of a row, from 0.
  std::size_t FirstPair(std::size_t place) const {
    return place * Size() - place * (place + 1) / 2;
  }
  bool ReadRow(std::size_t place, double* row);
  bool Fail(IoStatus status, std::size_t pair, char operation);

  Run& run_;
  CorrelationStore& source_;
  double* memory_ = nullptr;
  double* row_ = nullptr;
  DirectFile work_;    // ZSS
  bool kept_ = false;  // `work_` has all rows
  Failure failure_;
};

// Takes the components out one after the other.
class PowerIteration {
 public:
  PowerIteration(Run& run, Facet facet) : run_(run), facet_(facet), triangle_(run, facet) {}

  // False when files fail or memory can't be had; the latter is told.
  bool Open();
  // The next component: its eigenvalue, its loadings by place among the active entries. False when
  // a file fails, or when the user stops before it is found.
  bool FindNext();
  double Eigenvalue() const { return eigenvalue_; }
  std::span<const double> Loadings() const { return work_; }
  // Takes the component out of the correlations.
  bool Deflate();
  // Tells what failed, if anything did.
  void TellFailure();

 private:
  bool Iterate();
  bool Multiply();
  double LargestOfWork() const;
  double Normalise();

  Run& run_;
  Facet facet_;
  MemoryBlock block_;
  CorrelationTriangle triangle_;
  std::span<double> work_, trial_, diagonal_;  // by place among the active entries
  double eigenvalue_ = 0;
};

}  // namespace vardento
