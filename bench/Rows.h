#pragma once

#include "Table.h"

// The rows of the table. Each function first checks what it is going to time.

/// One record by parser and writer.
void AddRecordRows(Table& table);
/// One record through the library's interfaces.
void AddJobObjectRows(Table& table);
/// Long documents, in time and in memory.
void AddLargeRows(Table& table);
void AddCatalogueRow(Table& table);
/// What all classes and interfaces have in common.
void AddClassRows(Table& table);
void AddLogRows(Table& table);
/// The library's file and what attaching it allocates; must come first, before it is loaded.
void AddSizeRows(Table& table);
