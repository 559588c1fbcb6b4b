#pragma once

#include <string_view>

#include "analysis/run/option_field.h"
#include "batch/complaint.h"

// The values of option fields as texts of the command line.

constexpr const char* flagOn = "1";
constexpr const char* flagOff = "0";

// Whether a text can be a value of the field; names of variables are not looked up.
bool isFieldValue(const OptionField& field, const char* text);

// Says what the fields of this name take.
void complainOfValue(OptionFields fields, std::string_view name, const char* text, Complaint& complaint);

// The number of a column from 1 to `most` that is named as "#3"; 0 for any other name.
std::int32_t columnNumber(std::string_view name, std::int32_t most);

// The column of the cell table with this name, or of the number in "#3"; 0 when there is none.
std::int32_t findColumn(const CellTable& cells, std::string_view name);

// The loaded variable, from 1, of a name or column number; 0 when there is none or it is left out.
std::int32_t findVariable(const DataSet& data, std::string_view name);

// The same with a complaint about the value of an option when there is none.
std::int32_t requireVariable(const char* option, std::string_view name, const DataSet& data,
                             Complaint& complaint);

// Puts a text that can be a value into the options; false and a complaint when a variable is not in the data.
bool setField(const OptionField& field, const char* text, const DataSet& data, AnalysisOptions& options,
              Complaint& complaint);

// False when the field is a variable that nobody has named although there are some.
bool isChosen(const OptionField& field, const DataSet& data, AnalysisOptions& options);
void complainOfMissing(const OptionField& field, const DataSet& data, Complaint& complaint);

// What stands behind the option's name in a help text, such as "NAME" or "order|nominal".
void describeValue(const OptionField& field, char* text, std::size_t size);
