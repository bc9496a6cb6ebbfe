// All control variables of a run, under their own names, with their defaults. Set by the reader of
// the Control File and constant from then on; what the run changes on its way stands in
// VariablesInForce. Text keeps no trailing blanks unless said otherwise; a flag is
// true for "Y", "y" and "1".
#pragma once

#include <string>
#include <vector>

namespace vardento {

// How a per-item variable (GROUPS=, MODELS=, RESCORE=, IREFER=) was given.
namespace PerItem {
inline constexpr int NotYet = -1;  // RESCORE= only: not given so far
inline constexpr int None = 0;
inline constexpr int Text = 1;    // a text with one character for each item
inline constexpr int Single = 2;  // one value for all items
inline constexpr int List = 3;    // a sub-list or file, not yet read; Text once it was read
}  // namespace PerItem

// One row of IVALUE=: its tag, and a new code for each code of CODES= (CATEGS x XWIDE characters).
struct IvalueRow {
  char tag = ' ';
  std::string codes;
};

struct ControlSettings {
  // Files and sub-lists; a sub-list's name is that of its work file.
  std::string SPFILE, IAFILE, IWEIGHT, GROUPS_FILE, IREFER_FILE, RESCORE_FILE, MODELS_FILE, ILFILE,
      CFILE, CLFILE, IDFILE, EDFILE, MFORMS, PAFILE, PWEIGHT, PDFILE, PIVOT, SAFILE, SDFILE,
      ISUBTOTAL, PSUBTOTAL, DPF, DIF, TFILE;
  std::string GRFILE, GUFILE, IFILE, ISFILE, PFILE, RFILE, SFILE, SCFILE, SIFILE, XFILE, DISFILE,
      ICORFILE, PCORFILE;

  // Per-item variables: state, and the one-character-per-item text (NI x XWIDE characters as read,
  // significant in the first NI places once normalised).
  int GROUPS = PerItem::None;
  int MODELS = PerItem::None;
  int RESCORE = PerItem::NotYet;
  int IREFER = PerItem::None;
  std::string groupsText, modelsText, rescoreText, ireferText;
  char MODEL_LETTER = 'R';  // ' ' when MODELS= is per-item

  // Keys: index n - 1 holds key n, at most NI x XWIDE characters, shorter when blanks end it; score
  // -1 for a key that was not given.
  int NKEY = 0;
  std::vector<std::string> keyStrings;
  std::vector<int> keyScores;
  std::string KEYSCR;
  int KEYFROM = 0;
  int NIVALUE = 0;
  std::vector<IvalueRow> ivalueTables;

  // Codes and scoring.
  std::string CODES = "01";  // exactly CODES_LENGTH characters, blanks included
  int CODES_LENGTH = 2;
  std::string NEWSCR;
  std::string ALPHANUM;
  int CATEGS = 0;
  int XWIDE = 1;
  int MISSING = 255;
  bool STKEEP = true;

  // Data.
  std::string DATA;
  std::string FORMAT;
  int formatFields = 0;  // fields of a record as FORMAT= counts them
  char DELIM = ' ';
  int ITEM1 = 0;
  int NI = 0;
  int NAME1 = 1;
  int NAMLEN = 0;
  int NAMLMP = 0;
  int ITLEN = 0;
  bool INUMB = false;
  bool GRPFROM = false, MODFROM = false, RESFROM = false;
  bool MAKEKEY = false;
  std::string ISELECT = "*", PSELECT = "*";

  // Prompts for lists.
  bool ANCHOR_Q = false, IDELQU = false, PANCHQ = false, PDELQU = false, SANCHQ = false,
       SDELQU = false;

  // Estimation and fit.
  float CUTHI = 0, CUTLO = 0;
  float LCONV = 0.005F, RCONV = 0.1F;
  float EXTRSC = 0.3F;
  int MPROX = 10, MUCON = 0;
  bool PAIRED = false, PTBIS = false, STBIAS = false, TARGET = false, NORMAL = false;
  char LOCAL = 'N';
  std::string fitName = "ZSTD";  // 4 characters, follows LOCAL=
  char PRCOMP = 'S';

  // Scale of the user.
  float UMEAN = 0, USCALE = 1, UASCALE = 1;
  bool UMEAN_IS_ITEM = true;
  bool UANCHOR = true;
  int UDECIM = 2;
  std::string numberFormat = "(F8.2)";  // of measures in messages, follows UDECIM=
  float HIADJ = 0.25F, LOWADJ = 0.25F;

  // Report.
  bool BATCH = false;
  bool ASCII = true;
  std::string CURVES = "111";
  char FORMFD = '^';
  char CSV = 'N';
  bool HLINES = true;
  std::string ITEM_LABEL = "ITEM", PERSON_LABEL = "PERSON";
  std::string ITEMS_LABEL = "ITEMS", PERSONS_LABEL = "PERSONS";
  bool STEPT3 = true;
  std::string TABLES;  // "1" and "0" once normalised, up to 40
  std::string TITLE;
  bool CHART = false, DISTRT = true, HEADING = true, MNSQ = true, TOTAL = false, OUTFIT = true,
       REALSE = false;
  char OSORT = ' ';
  std::string IMAP, PMAP;
  float FITI = 2, FITP = 2;
  float G0ZONE = 50, G1ZONE = 50, LOA_VALUE = 0.4F;
  float MRANGE = 0, FRANGE = 0;
  int CATREF = 0, ISORT = 1, PSORT = 1, T1I = 0, T1P = 0, LINELEN = 80, MAXPAGE = 0;
};

}  // namespace vardento
