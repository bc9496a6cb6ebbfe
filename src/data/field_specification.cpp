#include "data/field_specification.h"

#include <algorithm>

#include "control/parse_number.h"
#include "data/delimited_record.h"
#include "platform/text_file.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

namespace {

// Walks over a text such as $S3W2+"."+$S5E6.
class FieldParser {
 public:
  FieldParser(std::string_view keyword, std::string_view text)
      : where_(std::string(keyword) + "=" + std::string(text)), text_(text) {}

  // False with the problem in words.
  bool Parse(FieldSpecification& specification, std::string& problem) {
    bool good = true;
    while (good && place_ < text_.size()) {
      const char c = text_[place_++];
      if (c == '$') {
        good = ParseField(specification);
      } else if (c == '"' || c == '\'') {
        good = ParseQuoted(specification, c);
      } else if (c != ' ' && c != '+') {
        AddLiteral(specification, std::string_view(&c, 1));
      }
    }
    if (good && specification.Start() == 0) good = Fail("No $S..W. or $S..E.. : ");
    problem = problem_;
    return good;
  }

 private:
  bool Fail(std::string_view words) {
    problem_ = std::string(words) + where_;
    return false;
  }

  bool AtEnd() const { return place_ >= text_.size(); }
  char TakeUpper() { return UpperCase(text_[place_++]); }

  // The number at this place; -1 when there are no digits.
  int TakeNumber() {
    std::string_view rest = text_.substr(place_);
    const std::string_view digits = TakeDigits(rest);
    place_ += digits.size();
    return std::min(ParseCount(digits), kMaxLineLength);
  }

  // Behind the "$".
  bool ParseField(FieldSpecification& specification) {
    if (AtEnd()) return Fail("Unexpected ending to: ");
    const char mark = TakeUpper();
    if (mark != 'S') return Fail("UNKNOWN $" + std::string(1, mark) + " in: ");
    if (AtEnd()) return Fail("Unexpected ending to: ");
    const int first = TakeNumber();
    if (first < 1) return Fail("$S.. NOT NUMERIC in: ");
    if (AtEnd()) return Fail("Unexpected ending to: ");
    const char kind = TakeUpper();
    if (kind != 'E' && kind != 'W') return Fail("$S..E or $S..W only in: ");
    if (AtEnd()) return Fail("Unexpected ending to: ");
    const int number = TakeNumber();
    if (kind == 'E' && number < first) return Fail("$S..E.. NOT VALID in: ");
    if (kind == 'W' && number < 1) return Fail("$S..W.. NOT VALID in: ");
    specification.pieces.push_back({"", first, kind == 'E' ? number : first + number - 1});
    return true;
  }

  bool ParseQuoted(FieldSpecification& specification, char quote) {
    const std::size_t end = text_.find(quote, place_);
    if (end == std::string_view::npos) return Fail("Unexpected ending to: ");
    AddLiteral(specification, text_.substr(place_, end - place_));
    place_ = end + 1;
    return true;
  }

  static void AddLiteral(FieldSpecification& specification, std::string_view text) {
    specification.pieces.push_back({std::string(text), 0, 0});
  }

  std::string where_;
  std::string_view text_;
  std::size_t place_ = 0;
  std::string problem_;
};

using Piece = FieldSpecification::Piece;

// Joins the pieces; `take` gives the text of a field.
template <class Take>
std::string JoinPieces(const FieldSpecification& specification, Take take) {
  std::string value;
  for (const Piece& piece : specification.pieces) {
    if (piece.first == 0) {
      value += piece.literal;
    } else {
      value += take(piece);
    }
  }
  BlankControlCharacters(value);
  return value;
}

std::string_view ColumnsOf(const Piece& piece, std::string_view record) {
  const auto first = std::min(static_cast<std::size_t>(piece.first) - 1, record.size());
  return record.substr(first, static_cast<std::size_t>(piece.last - piece.first) + 1);
}

}  // namespace

int FieldSpecification::Start() const {
  const auto field = std::find_if(pieces.begin(), pieces.end(),
                                  [](const Piece& piece) { return piece.first > 0; });
  return field == pieces.end() ? 0 : field->first;
}

FieldSpecification ParseFieldSpecification(Run& run, std::string_view keyword,
                                           std::string_view text) {
  FieldSpecification specification;
  std::string problem;
  if (FieldParser(keyword, text).Parse(specification, problem)) return specification;
  ReportMessage(run, problem);
  return {};
}

std::string ExtractField(const FieldSpecification& specification, std::string_view record) {
  return std::string(Trim(JoinPieces(
      specification, [record](const Piece& piece) { return ColumnsOf(piece, record); })));
}

std::string CutField(const FieldSpecification& specification, std::string_view record) {
  return JoinPieces(specification, [record](const Piece& piece) {
    return PadRight(ColumnsOf(piece, record), piece.last - piece.first + 1);
  });
}

std::string ExtractDelimitedField(const FieldSpecification& specification, std::string_view record,
                                  char delimiter) {
  std::string joined;  // the text of one piece
  return std::string(Trim(JoinPieces(specification, [&](const Piece& piece) {
    joined.clear();
    FieldCursor cursor(record, delimiter);
    std::string_view field;
    for (int number = 1; number <= piece.last && cursor.Next(field); ++number) {
      if (number >= piece.first) joined += field;
    }
    return std::string_view(joined);
  })));
}

}  // namespace vardento
