#pragma once

#include "Table.h"

// The rows of the table. Each function first checks what it is going to time.

/// One record by parser and writer.
void AddRecordRows(Table& table);
/// One record through the library's interfaces; needs AddRecordRows.
void AddJobObjectRows(Table& table);
/// Long documents.
void AddLargeRows(Table& table);
