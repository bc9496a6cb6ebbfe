// The work files of persons and items and the stores in memory that mirror them: one record for
// each person, read one person at a time. Failures end the run in the words of their file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "run/run.h"

namespace vardento {

void OpenWorkFiles(Run& run);   // ZMM, ZNN, ZPP, ZQQ; needs NI and NAMLEN
void AllocateStores(Run& run);  // the two optional stores; neither is missed when refused
// Takes a block that the run can't do without: when it is refused, the stores in memory are given
// back for it, and what they held is read from the files from then on. Ends the run with the memory
// message when that doesn't help.
void TakeBlock(Run& run, const BlockPlan& plan, MemoryBlock& block, int count,
               std::string_view word);
// The same without the end: false when memory is refused for good.
bool TryTakeBlock(Run& run, const BlockPlan& plan, MemoryBlock& block);

// Writes what the person files still hold back, so that a disk that is full by then is told as a
// failed write, not by the next reading.
void FlushPersonFiles(Run& run);

void WritePersonName(Run& run, int person, std::string_view label);
// The label, NAMLEN characters, trailing blanks included; "" when NAMLEN is below 1.
std::string ReadPersonName(Run& run, int person);
void WriteCodedRow(Run& run, int person, const std::uint8_t* row);
void ReadCodedRow(Run& run, int person, std::uint8_t* row);
// To the file, and to the matrix if present.
void WriteScoredRow(Run& run, int person, const std::uint8_t* row);
// NI scores of the person: a pointer into the matrix if present, else into arrays.ScoredRow after a
// read. Valid until the next call.
const std::uint8_t* ReadScoredRow(Run& run, int person);
// Reads the row from the file and copies it into the matrix if present: the first pass of
// estimation.
const std::uint8_t* FillScoredRow(Run& run, int person);
// One record of a person: the scores until the fit pass, which puts its own record in their place.
void WritePersonScores(Run& run, int person, const PersonScores& record);
PersonScores ReadPersonScores(Run& run, int person);
void WritePersonWork(Run& run, int person, const PersonWorkRecord& record);
PersonWorkRecord ReadPersonWork(Run& run, int person);
// The label of item i as stored, without trailing blanks; its number when none is stored.
std::string ItemLabelOf(Run& run, int item);
// "I0012" or "12345": what stands for a missing item label.
std::string ItemNumberLabel(int item, int NI);

}  // namespace vardento
