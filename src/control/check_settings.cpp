#include "control/check_settings.h"

#include <algorithm>
#include <cstdint>
#include <set>

#include "control/data_format.h"
#include "control/keyword_table.h"
#include "control/parse_number.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kLargestValue = 32000;
constexpr int kMaxCodesLength = 1000;
constexpr int kMaxLineLengthOfReport = 500;
constexpr int kMinPage = 20;
constexpr int kMaxLabel = 300;
constexpr int kDefaultPersonLabel = 30;
constexpr int kMissing = 255;
constexpr std::size_t kTitleLength = 60;

void PrepareLabelFile(Run& run, std::string& name, std::string_view keyword,
                      std::string_view caption) {
  if (Trim(name).empty()) return;
  AddEditEntry(run, caption, name);
  TextReader reader;
  run.RunIoStatus = reader.Open(name);
  if (run.RunIoStatus == kIoOk) {
    reader.Close();
    PrepareFile(run, name, keyword);
  }
  if (run.RunIoStatus == kIoOk) return;
  ReportMessage(run, "PROBLEM WITH " + std::string(keyword) + name);
  FatalFileFailure(run, name, 'I');
}

void LimitLines(ControlSettings& settings) {
  if (settings.LINELEN == 0) settings.LINELEN = kMaxLineLengthOfReport;
  if (settings.MAXPAGE > 0) settings.MAXPAGE = std::max(settings.MAXPAGE, kMinPage);
}

void NormaliseChoices(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  if (settings.CSV == 't') settings.CSV = 'T';
  if (settings.CSV != ',' && settings.CSV != 'T') settings.CSV = YesNo(settings.CSV);
  if (std::string_view("SVUCAMD ").find(settings.OSORT) == std::string_view::npos) {
    ReportMessage(run, "unknown OSORT = \"" + std::string(1, settings.OSORT) + "\"");
    settings.OSORT = ' ';
  }
  if (settings.LOCAL != 'L') settings.LOCAL = YesNo(settings.LOCAL);
  settings.fitName = settings.LOCAL == 'L' ? " LOG" : settings.LOCAL == 'Y' ? "ZEMP" : "ZSTD";
}

std::string Plural(const std::string& label) {
  const bool upper =
      std::none_of(label.begin(), label.end(), [](char c) { return c >= 'a' && c <= 'z'; });
  return label + (upper ? 'S' : 's');
}

void CompleteWords(ControlSettings& settings) {
  if (Trim(settings.ISELECT).empty()) settings.ISELECT = "*";
  if (Trim(settings.PSELECT).empty()) settings.PSELECT = "*";
  if (Trim(settings.ITEM_LABEL).empty()) settings.ITEM_LABEL = "ITEM";
  if (Trim(settings.PERSON_LABEL).empty()) settings.PERSON_LABEL = "PERSON";
  settings.PERSONS_LABEL = Plural(settings.PERSON_LABEL);
  settings.ITEMS_LABEL = Plural(settings.ITEM_LABEL);
}

// Steps that let one setting follow from others.
void DeriveStates(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  if (settings.CUTLO != 0 || settings.CUTHI != 0 || settings.PAIRED) settings.PTBIS = false;
  if (settings.RESFROM) settings.RESCORE = PerItem::Text;
  if (settings.RESCORE == PerItem::NotYet) {
    settings.RESCORE = Trim(settings.NEWSCR).empty() ? PerItem::None : PerItem::Single;
  }
  if (settings.GRPFROM) settings.GROUPS = PerItem::Text;
  if (settings.MODFROM) {
    settings.MODELS = PerItem::Text;
    settings.MODEL_LETTER = ' ';
  }
  // MAKEKEY= needs room for the key that it makes.
  settings.NKEY = std::max({settings.NKEY, settings.KEYFROM, settings.MAKEKEY ? 1 : 0});
  if (settings.MISSING != kMissing && settings.MISSING != 0) {
    ReportMessage(run, "Warning:  Unusual score assigned to missing data. MISSING= " +
                           IntegerText(settings.MISSING));
  }
}

void CheckCodeCount(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  const std::string length = IntegerText(settings.CODES_LENGTH);
  if (settings.CODES_LENGTH > kMaxCodesLength) {
    FailRun(run, " CODES= HAS LENGTH OF " + length + " WHICH IS LONGER THAN MAXIMUM OF " +
                     IntegerText(kMaxCodesLength));
  }
  const std::string xwide = IntegerText(settings.XWIDE);
  const std::string codes = " CODES= \"" + settings.CODES + "\" HAS LENGTH OF";
  const int counted = settings.CODES_LENGTH / settings.XWIDE;
  if (settings.CATEGS == 0) settings.CATEGS = counted;
  if (settings.CATEGS != counted) {
    FailRun(run, codes + length + ". THIS DOES NOT AGREE WITH (OPTIONAL) CATEGS=" +
                     IntegerText(settings.CATEGS) + " AND XWIDE=" + xwide);
  }
  if (settings.CATEGS * settings.XWIDE != settings.CODES_LENGTH) {
    FailRun(run, codes + " " + length + ". THIS DOES NOT AGREE WITH XWIDE=" + xwide);
  }
  if (settings.CATEGS < 1 || (settings.CATEGS == 1 && settings.MISSING == kMissing)) {
    FailRun(run, " CODES='" + settings.CODES + "' IS TOO SHORT.  XWIDE=" + xwide +
                     " AND MISSNG=" + IntegerText(settings.MISSING));
  }
}

void AdjustCodes(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  const auto length = static_cast<std::size_t>(settings.CODES_LENGTH);
  if (settings.RESCORE > PerItem::None && settings.NEWSCR.size() > length) {
    settings.NEWSCR.resize(length);
  }
  const auto xwide = static_cast<std::size_t>(settings.XWIDE);
  std::set<std::string> seen;
  for (std::size_t place = 0; place < length; place += xwide) {
    std::string code(Trim(std::string_view(settings.CODES).substr(place, xwide)));
    code.resize(xwide, ' ');
    settings.CODES.replace(place, xwide, code);
    if (!seen.insert(code).second) {
      ReportMessage(run, " WARNING! \"" + code + "\" SPECIFIED TWICE IN CODES=");
    }
  }
}

void CompleteScale(ControlSettings& settings) {
  if (settings.UASCALE != 1) settings.UANCHOR = false;
  settings.numberFormat = "(F8." + IntegerText(settings.UDECIM) + ")";
}

void CheckRange(Run& run, std::string_view name, int value) {
  if (value >= 1 && value <= kLargestValue) return;
  FailRun(run, " PROBLEM WITH " + std::string(name) + "= " + IntegerText(value) +
                   ". IT MUST BE BETWEEN 1 AND " + IntegerText(kLargestValue));
}

void SetLabelLengths(ControlSettings& settings) {
  if (settings.ITLEN == 0) settings.ITLEN = kMaxLabel;
  if (settings.NAMLEN > 0) return;
  const bool before = settings.NAME1 < settings.ITEM1 && settings.DELIM == ' ';
  settings.NAMLEN =
      before ? std::min(settings.ITEM1 - settings.NAME1, kDefaultPersonLabel) : kDefaultPersonLabel;
}

void CheckRecordLength(Run& run) {
  const ControlSettings& settings = run.settings;
  const std::int64_t last =
      settings.ITEM1 - 1 + static_cast<std::int64_t>(settings.XWIDE) * settings.NI;
  const std::int64_t end = std::max<std::int64_t>(last, settings.NAME1);
  if (end <= kLargestValue) return;
  ReportMessage(run, " ITEMS OVERFLOW MAXIMUM RECORD LENGTH:");
  FailRun(run, "  MAXIMUM RECORD LENGTH (MAXREC) IS " + IntegerText(kLargestValue) +
                   ", ITEM1=" + IntegerText(settings.ITEM1) + ", NI=" + IntegerText(settings.NI) +
                   ", XWIDE=" + IntegerText(settings.XWIDE) + ", ENDS AT " +
                   IntegerText(static_cast<int>(end)));
}

}  // namespace

void NormaliseSettings(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  LimitLines(settings);
  if (Trim(settings.TITLE).empty()) {
    settings.TITLE = TrimRight(run.startUp.ControlFileName.substr(0, kTitleLength));
  }
  NormaliseChoices(run);
  CompleteWords(settings);
}

void CheckSettings(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  PrepareLabelFile(run, settings.CFILE, "CFILE=", "Edit Category CFILE=");
  PrepareLabelFile(run, settings.CLFILE, "CLFILE=", "Edit Code Label CLFILE=");
  NormaliseSettings(run);
  DeriveStates(run);
  CheckCodeCount(run);
  AdjustCodes(run);
  CompleteScale(settings);
  CheckRange(run, "ITEM1", settings.ITEM1);
  CheckRange(run, "NAME1", settings.NAME1);
  CheckRange(run, "NI", settings.NI);
  settings.PRCOMP = UpperCase(settings.PRCOMP);
  SetLabelLengths(settings);
  CheckRecordLength(run);
  CheckFormat(run);
}

}  // namespace vardento
