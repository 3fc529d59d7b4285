#pragma once

#include "Table.h"

// The rows of the table. Each function first checks the results of the work that it times.

/// One record, through parser and writer.
void AddRecordRows(Table& table);
/// One record through the library's interfaces.
void AddJobObjectRows(Table& table);
/// Time and memory of long documents.
void AddLargeRows(Table& table);
void AddCatalogueRow(Table& table);
/// Object creation and member name look-up of every class.
void AddClassRows(Table& table);
/// Late binding and VBScript.
void AddScriptRows(Table& table);
void AddLogRows(Table& table);
/// Size of the library's file, and heap allocated by attaching. Must run first, before the library is loaded.
void AddSizeRows(Table& table);
