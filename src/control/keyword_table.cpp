#include "control/keyword_table.h"

#include <algorithm>

#include "control/control_source.h"
#include "control/keyword_values.h"
#include "control/parse_number.h"
#include "text/number_text.h"

namespace vardento {
namespace {

using Settings = ControlSettings;
using Stage = KeywordStage;
using Kind = KeywordKind;
using Condition = KeywordCondition;
using Treatment = void (*)(KeywordCall&);
using View = std::string_view;
using Text = std::string Settings::*;

constexpr KeywordRow ListFileRow(View name, View prefixes, View tag, Text target,
                                 View description) {
  KeywordRow row{name, prefixes, Stage::Files, Kind::ListFile, target, description};
  row.listTag = tag;
  row.length = kFileNameLength;
  return row;
}
constexpr KeywordRow PerItemListRow(View name, View prefixes, View tag, Text target,
                                    int Settings::*state, View description) {
  KeywordRow row = ListFileRow(name, prefixes, tag, target, description);
  row.condition = Condition::ValueIsList;
  row.listState = state;
  return row;
}
constexpr KeywordRow FileRow(View name, View prefixes, Text target, View description) {
  KeywordRow row{name, prefixes, Stage::Words, Kind::File, target, description};
  row.length = kFileNameLength;
  return row;
}
constexpr KeywordRow FlagRow(View name, View prefixes, bool Settings::*target, View description,
                             Treatment treatment = nullptr) {
  return {name, prefixes, Stage::Words, Kind::Flag, target, description, treatment};
}
constexpr KeywordRow CharacterRow(View name, View prefixes, char Settings::*target,
                                  View description, Treatment treatment = nullptr) {
  return {name, prefixes, Stage::Words, Kind::Character, target, description, treatment};
}
constexpr KeywordRow ChoiceRow(View name, View prefixes, char Settings::*target, View letters,
                               View description, Treatment treatment = nullptr) {
  KeywordRow row{name, prefixes, Stage::Words, Kind::Choice, target, description, treatment};
  row.letters = letters;
  return row;
}
constexpr KeywordRow FlagsRow(View name, View prefixes, int length, Text target, View description,
                              Treatment treatment = nullptr) {
  KeywordRow row{name, prefixes, Stage::Words, Kind::Flags, target, description, treatment};
  row.length = length;
  return row;
}
constexpr KeywordRow TextRow(View name, View prefixes, int length, Text target, View description,
                             Treatment treatment = nullptr, Condition condition = Condition::None) {
  return {name,        prefixes,  Stage::Words, Kind::Text, target,
          description, treatment, condition,    length};
}
constexpr KeywordRow RealRow(View name, View prefixes, float Settings::*target, View description,
                             Treatment treatment = nullptr) {
  return {name, prefixes, Stage::Reals, Kind::Real, target, description, treatment};
}
constexpr KeywordRow IntegerRow(View name, View prefixes, int Settings::*target, View description,
                                Treatment treatment = nullptr) {
  return {name, prefixes, Stage::Integers, Kind::Integer, target, description, treatment};
}

constexpr KeywordRow Within(float lowest, float highest, KeywordRow row) {
  row.lowest = lowest;
  row.highest = highest;
  return row;
}

constexpr KeywordRow kRows[] = {
    {"SPFILE", "SP", Stage::Files, Kind::ListFile, &Settings::SPFILE,
     "a file of further control lines", OpenSupplementFile, Condition::NotSpecification},
    ListFileRow("IAFILE", "AF IAF", "IA", &Settings::IAFILE, "measures at which items are fixed"),
    ListFileRow("IWEIGHT", "IW", "IW", &Settings::IWEIGHT, "weights of the items"),
    PerItemListRow("GROUPS", "GRO", "GR", &Settings::GROUPS_FILE, &Settings::GROUPS,
                   "the group of each item, as a list"),
    PerItemListRow("IREFER", "IR", "IR", &Settings::IREFER_FILE, &Settings::IREFER,
                   "the value table of each item, as a list"),
    PerItemListRow("RESCORE", "RESC", "RE", &Settings::RESCORE_FILE, &Settings::RESCORE,
                   "the items that are rescored, as a list"),
    PerItemListRow("MODELS", "MODE", "MO", &Settings::MODELS_FILE, &Settings::MODELS,
                   "the model of each item, as a list"),
    ListFileRow("ILFILE", "IL", "IL", &Settings::ILFILE, "item labels"),
    ListFileRow("CFILE", "CF", "CF", &Settings::CFILE, "labels of categories"),
    ListFileRow("CLFILE", "CL", "CL", &Settings::CLFILE, "labels of response codes"),
    ListFileRow("IDFILE", "DF IDF", "ID", &Settings::IDFILE, "items to leave out"),
    ListFileRow("EDFILE", "ED", "ED", &Settings::EDFILE, "single data values to replace"),
    ListFileRow("MFORMS", "MFO", "MF", &Settings::MFORMS,
                "how several forms of a test lie in one data set"),
    ListFileRow("PAFILE", "PAF", "PA", &Settings::PAFILE, "measures at which persons are fixed"),
    ListFileRow("PWEIGHT", "PW", "PW", &Settings::PWEIGHT, "weights of the persons"),
    ListFileRow("PDFILE", "PDF", "PD", &Settings::PDFILE, "persons to leave out"),
    ListFileRow("PIVOT", "PI", "PI", &Settings::PIVOT,
                "score points at which item difficulties stand"),
    ListFileRow("SAFILE", "SAF", "SA", &Settings::SAFILE, "step calibrations that are fixed"),
    ListFileRow("SDFILE", "SDF", "SD", &Settings::SDFILE, "steps to leave out"),
    ListFileRow("ISUBTOTAL", "ISU", "IS", &Settings::ISUBTOTAL, "classes of items for subtotals"),
    ListFileRow("PSUBTOTAL", "PSU", "PS", &Settings::PSUBTOTAL, "classes of persons for subtotals"),
    ListFileRow("DPF", "DPF", "DP", &Settings::DPF,
                "classes of items for differential person functioning"),
    ListFileRow("DIF", "DIF", "DI", &Settings::DIF,
                "classes of persons for differential item functioning"),
    ListFileRow("TFILE", "TF", "TF", &Settings::TFILE, "a list of Tables to print"),
    {"KEYn", "KEY", Stage::Words, Kind::Count, &Settings::NKEY,
     "right answers of the items; KEY1= and on", CountKey, Condition::IsKeyLine},
    {"IVALUEx", "IV", Stage::Words, Kind::Count, &Settings::NIVALUE,
     "new codes for the items that IREFER= marks with x", CountIvalue},
    FlagRow("ANCHOR_Q", "AN IAN", &Settings::ANCHOR_Q, "asks for item anchors"),
    TextRow("ALPHANUM", "AL", 256, &Settings::ALPHANUM,
            "alphabet in which the place of a code is its score"),
    FlagRow("ASCII", "AS", &Settings::ASCII, "plain characters for the lines and boxes of Tables"),
    FlagRow("BATCH", "B", &Settings::BATCH, "runs without any prompt", StoreBatch),
    TextRow("CODES", "COD", 1000, &Settings::CODES, "the response codes that are valid",
            StoreCodes),
    ChoiceRow("CSV", "CS", &Settings::CSV, ",Tt",
              "form of output files: N fixed columns, Y commas, T tabs"),
    FlagsRow("CURVES", "CUR", 3, &Settings::CURVES, "the three category curves to plot",
             StoreCurves),
    CharacterRow("DELIM", "DELI", &Settings::DELIM, "what separates the fields of a data record",
                 StoreUpperCase),
    FlagRow("IDELQU", "DELQ IDE", &Settings::IDELQU, "asks for item deletions"),
    TextRow("FORMAT", "FORMA", 512, &Settings::FORMAT, "how the fields lie in a data record"),
    CharacterRow("FORMFD", "FORMF", &Settings::FORMFD, "page break character"),
    FileRow("GRFILE", "GRF", &Settings::GRFILE, "output file of graph coordinates"),
    {"GROUPS", "GRO", Stage::Words, Kind::PerItem, &Settings::GROUPS,
     "items that share a rating scale share a letter; 0: each its own", StoreGroupsState},
    FileRow("GUFILE", "GU", &Settings::GUFILE, "an output file to come"),
    FileRow("IFILE", "IF", &Settings::IFILE, "output file of item measures"),
    {"IREFER", "IR", Stage::Words, Kind::PerItem, &Settings::IREFER, "the value table of each item",
     StoreIreferState},
    FileRow("ISFILE", "ISF", &Settings::ISFILE, "output file of item structures"),
    TextRow("ITEM", "ITEM", 12, &Settings::ITEM_LABEL, "the word for an item", nullptr,
            Condition::NotItem1),
    TextRow("KEYSCR", "KEYS", 512, &Settings::KEYSCR, "the score of a response that fits each key"),
    {"MODELS", "MODE", Stage::Words, Kind::PerItem, &Settings::MODELS,
     "R, S or F: the response model, of all items or item by item", StoreModelsState},
    TextRow("MS", "MS", 1000, &Settings::DATA, "another name of DATA="),
    TextRow("DATA", "DA", 1000, &Settings::DATA,
            "data files, joined by +; blank: the data follow the item labels"),
    TextRow("NEWSCR", "NE", 1000, &Settings::NEWSCR, "new codes in the place of those of CODES="),
    FlagRow("PAIRED", "PAI", &Settings::PAIRED,
            "paired-comparison data: adjusts standard errors and fit"),
    FlagRow("PANCHQ", "PAN", &Settings::PANCHQ, "asks for person anchors"),
    FlagRow("PDELQU", "PDE", &Settings::PDELQU, "asks for person deletions"),
    TextRow("PERSON", "PE", 12, &Settings::PERSON_LABEL, "the word for a person"),
    FileRow("PFILE", "PF", &Settings::PFILE, "output file of person measures"),
    CharacterRow("PRCOMP", "PR", &Settings::PRCOMP,
                 "residuals that principal components are taken of", StoreUpperCase),
    FlagRow("PTBIS", "PT", &Settings::PTBIS,
            "point-biserial in the place of point-measure correlations"),
    {"RESCORE", "RESC", Stage::Words, Kind::PerItem, &Settings::RESCORE,
     "the items that NEWSCR= or the keys rescore; 2: all", StoreRescoreState},
    FileRow("RFILE", "RF", &Settings::RFILE, "output file of scored responses"),
    CharacterRow("SE", "SE", &Settings::DELIM, "another name of DELIM=", StoreUpperCase),
    FileRow("SFILE", "SF", &Settings::SFILE, "output file of step calibrations"),
    FileRow("SCFILE", "SCF", &Settings::SCFILE, "output file of scores and measures"),
    FlagRow("SANCHQ", "SAN", &Settings::SANCHQ, "asks for step anchors"),
    FlagRow("SDELQU", "SDE", &Settings::SDELQU, "asks for step deletions"),
    FileRow("SIFILE", "SI", &Settings::SIFILE, "simulated data, an output file to come"),
    FlagRow("STBIAS", "STB", &Settings::STBIAS, "corrects measures for statistical bias"),
    FlagRow("STKEEP", "STK STEPK", &Settings::STKEEP,
            "keeps categories that were not observed between others"),
    FlagRow("STEPT3", "STEPT", &Settings::STEPT3, "category structures in Table 3"),
    FlagsRow("TABLES", "TAB", 40, &Settings::TABLES, "position n: 1 prints Table n"),
    FlagRow("TARGET", "TAR", &Settings::TARGET, "down-weights off-target responses"),
    TextRow("TITLE", "TI", 60, &Settings::TITLE,
            "the title of the pages; blank: name of the Control File"),
    FlagRow("UANCHOR", "UAN", &Settings::UANCHOR, "anchors are in user-scaled units"),
    FlagRow("NORMAL", "NO", &Settings::NORMAL, "standardises fit without the cube root"),
    FileRow("XFILE", "XF", &Settings::XFILE, "output file of single observations"),
    FlagRow("CHART", "CH", &Settings::CHART, "charts in the fit Tables"),
    FileRow("DISFILE", "DISF", &Settings::DISFILE, "output file of category counts by item"),
    FlagRow("DISTRT", "DIST", &Settings::DISTRT, "category frequencies of the items in Tables"),
    FlagRow("GRPFROM", "GRP", &Settings::GRPFROM, "GROUPS= stands in data format before the data"),
    FlagRow("HEADING", "HE", &Settings::HEADING, "headings on pages of Tables"),
    FlagRow("HLINES", "HL", &Settings::HLINES, "heading lines in output files"),
    FileRow("ICORFILE", "IC", &Settings::ICORFILE, "output file of correlations of items"),
    FlagRow("INUMB", "IN ISEQ", &Settings::INUMB,
            "no item labels: the item numbers stand for them"),
    TextRow("ISELECT", "ISE", 512, &Settings::ISELECT, "mask of the labels of items to keep",
            StoreMask),
    ChoiceRow("LOCAL", "LOC", &Settings::LOCAL, "Ll2",
              "standardises fit in the sample; L: logarithms of mean-squares", StoreLocal),
    FlagRow("MAKEKEY", "MAK", &Settings::MAKEKEY, "makes a key from the data"),
    FlagRow("MNSQ", "MN ME", &Settings::MNSQ, "mean-squares in fit plots, else standardised fit"),
    FlagRow("MODFROM", "MODF", &Settings::MODFROM, "MODELS= stands in data format before the data"),
    FlagRow("TOTAL", "TO", &Settings::TOTAL, "scores and counts with extreme entries in Tables"),
    CharacterRow("OSORT", "OS", &Settings::OSORT,
                 "order of categories: S, V, U, C, A, M, D or blank"),
    FlagRow("OUTFIT", "OU", &Settings::OUTFIT, "sorts by OUTFIT too, else by INFIT alone"),
    TextRow("IMAP", "IM", 60, &Settings::IMAP, "columns of item labels in maps"),
    TextRow("PMAP", "PM", 60, &Settings::PMAP, "columns of person labels in maps"),
    FileRow("PCORFILE", "PC", &Settings::PCORFILE, "output file of correlations of persons"),
    TextRow("PSELECT", "PSE", 512, &Settings::PSELECT, "mask of the labels of persons to keep",
            StoreMask),
    FlagRow("REALSE", "REA", &Settings::REALSE, "standard errors inflated by misfit"),
    FlagRow("RESFROM", "RESF", &Settings::RESFROM,
            "RESCORE= stands in data format before the data"),
    RealRow("CUTHI", "CUTH", &Settings::CUTHI,
            "drops responses of persons far above an item, in user-scaled units"),
    RealRow("CUTLO", "CUTL", &Settings::CUTLO,
            "drops responses of persons far below an item, in user-scaled units"),
    RealRow("LCONV", "LC", &Settings::LCONV,
            "largest change of a measure at convergence, in logits"),
    RealRow("HIADJ", "HI", &Settings::HIADJ,
            "score points below the top at which the highest category is quoted", StoreAbsolute),
    RealRow("LOWADJ", "LOW", &Settings::LOWADJ,
            "score points above 0 at which the lowest category is quoted", StoreAbsolute),
    Within(0.01F, 1,
           RealRow("EXTRSC", "EXTRS MM", &Settings::EXTRSC,
                   "score points by which extreme scores are moved; 0.01 to 1", StoreAbsolute)),
    RealRow("FITI", "FITI MFIT2", &Settings::FITI, "size of item misfit that is listed"),
    RealRow("FITP", "FITP MFIT1", &Settings::FITP, "size of person misfit that is listed"),
    RealRow("G0ZONE", "G0 GO", &Settings::G0ZONE, "lower limit for output files to come"),
    RealRow("G1ZONE", "G1", &Settings::G1ZONE, "upper limit for output files to come"),
    RealRow("LOA", "LOA", &Settings::LOA_VALUE,
            "loading from which a component's entries are listed", StoreAbsolute),
    RealRow("RCONV", "RC", &Settings::RCONV,
            "largest score residual at convergence, in score points"),
    RealRow("UMEAN", "UM UI", &Settings::UMEAN, "mean of the items, in user-scaled units",
            StoreItemMean),
    RealRow("UP", "UP", &Settings::UMEAN, "mean of the persons, in user-scaled units",
            StorePersonMean),
    RealRow("UASCALE", "UAS", &Settings::UASCALE, "scale of the anchors: their units in a logit",
            StoreScale),
    RealRow("USCALE", "US", &Settings::USCALE, "user-scaled units in a logit", StoreScale),
    RealRow("MRANGE", "XA MR", &Settings::MRANGE, "half-range of measures in plots", StoreAbsolute),
    RealRow("FRANGE", "Y FR", &Settings::FRANGE, "half-range of fit in plots", StoreAbsolute),
    IntegerRow("CATREF", "CATR", &Settings::CATREF, "a category, for Tables to come"),
    IntegerRow("CATEGS", "CATE", &Settings::CATEGS, "number of codes; 0: as many as CODES= holds"),
    {"CHARTF",
     "CHARTF EXTRE",
     Stage::Integers,
     Kind::Ignored,
     {},
     "accepted and ignored",
     AcceptOnly},
    {"EN", "EN", Stage::Integers, Kind::Ignored, {}, "accepted and ignored", AcceptOnly},
    IntegerRow("ISORT", "ISO", &Settings::ISORT, "first label column that items are sorted by"),
    IntegerRow("ITEM1", "ITEM1", &Settings::ITEM1, "first column of the responses"),
    Within(0, 300,
           IntegerRow("ITLEN", "ITL", &Settings::ITLEN,
                      "length of item labels; 0: as long as they are")),
    IntegerRow("T1I", "T1I", &Settings::T1I, "items for each mark in Table 1", StoreAbsolute),
    IntegerRow("KEYFROM", "KEYF", &Settings::KEYFROM,
               "number of keys in data format before the data"),
    Within(0, 500,
           IntegerRow("LINELEN", "LI", &Settings::LINELEN,
                      "characters on a line of the report; 0: all")),
    Within(0, kAnyNumber,
           IntegerRow("MAXPAGE", "MAX", &Settings::MAXPAGE, "lines on a page; 0: no limit")),
    Within(-kAnyNumber, 255,
           IntegerRow("MISSING", "MI", &Settings::MISSING,
                      "score of a response not in CODES=; 255: missing")),
    IntegerRow("MPROX", "MP", &Settings::MPROX, "limit of PROX iterations"),
    IntegerRow("MUCON", "MU", &Settings::MUCON, "limit of joint iterations; 0: none"),
    IntegerRow("NAME1", "NAME1", &Settings::NAME1, "first column of the person label"),
    Within(0, 300,
           IntegerRow("NAMLEN", "NAMLE NAMELE", &Settings::NAMLEN,
                      "length of person labels; 0: up to the responses")),
    IntegerRow("NAMLMP", "NAMLM NAML6 NAMELM", &Settings::NAMLMP,
               "length of person labels in maps"),
    {"NC", "NC", Stage::Integers, Kind::Ignored, {}, "accepted and ignored", AcceptOnly},
    IntegerRow("NI", "NI", &Settings::NI, "number of items"),
    IntegerRow("T1P", "T1P", &Settings::T1P, "persons for each mark in Table 1", StoreAbsolute),
    IntegerRow("PSORT", "PSO", &Settings::PSORT, "first label column that persons are sorted by"),
    Within(0, 4,
           IntegerRow("UDECIM", "UD", &Settings::UDECIM, "decimals of measures in Tables, 0 to 4")),
    Within(1, kAnyNumber, IntegerRow("XWIDE", "XW", &Settings::XWIDE, "columns of one response")),
    {"KEYn",
     "KEY",
     Stage::PerItem,
     Kind::PerItem,
     {},
     "the key itself",
     StoreKey,
     Condition::IsKeyLine},
    {"IVALUEx", "IV", Stage::PerItem, Kind::PerItem, {}, "the value table itself", StoreIvalue},
    {"GROUPS", "GRO", Stage::PerItem, Kind::PerItem, {}, "the text itself", StorePerItemText},
    {"MODELS", "MODE", Stage::PerItem, Kind::PerItem, {}, "the text itself", StorePerItemText},
    {"IREFER", "IR", Stage::PerItem, Kind::PerItem, {}, "the text itself", StorePerItemText},
    {"RESCORE", "RESC", Stage::PerItem, Kind::PerItem, {}, "the text itself", StorePerItemText},
};

bool BeginsWithOneOf(View keyword, View prefixes) {
  while (!prefixes.empty()) {
    const std::size_t end = std::min(prefixes.find(' '), prefixes.size());
    if (keyword.starts_with(prefixes.substr(0, end))) return true;
    prefixes.remove_prefix(std::min(end + 1, prefixes.size()));
  }
  return false;
}

bool Holds(Condition condition, View keyword, View value, int pass) {
  switch (condition) {
    case Condition::ValueIsList:
      return value.starts_with('*');
    case Condition::NotItem1:
      return !keyword.starts_with("ITEM1");
    case Condition::IsKeyLine:
      return !keyword.starts_with("KEYS") && !keyword.starts_with("KEYF");
    case Condition::NotSpecification:
      return pass != kSpecificationPass;
    case Condition::None:
      break;
  }
  return true;
}

}  // namespace

std::span<const KeywordRow> KeywordTable() { return kRows; }

const KeywordRow* FindKeyword(KeywordStage stage, std::string_view keyword, std::string_view value,
                              int pass) {
  for (const KeywordRow& row : kRows) {
    if (row.stage == stage && BeginsWithOneOf(keyword, row.prefixes) &&
        Holds(row.condition, keyword, value, pass)) {
      return &row;
    }
  }
  return nullptr;
}

int KeyNumber(std::string_view keyword) {
  const std::string_view digits = Trim(keyword.substr(std::min<std::size_t>(3, keyword.size())));
  return digits.empty() ? 1 : ParseCount(digits);
}

}  // namespace vardento
