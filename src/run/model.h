// The three models of a group of items, by the letters of MODELS=.
#pragma once

namespace vardento {

enum class Model : char {
  Rating = 'R',     // adjacent categories are compared: rating scale, partial credit
  Successes = 'S',  // steps are taken in succession; the first failure ends them
  Failures = 'F',   // the mirror: the first success ends them
};

inline char LetterOf(Model model) { return static_cast<char>(model); }

}  // namespace vardento
