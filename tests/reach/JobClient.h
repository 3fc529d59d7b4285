#pragma once

#include "tests/support/ComClient.h"

// Typical client calls on a print job. The results must be the same if the job is in another apartment or
// process.

/// True if calls to the object leave the calling apartment.
bool IsProxy(IUnknown* object);

void CheckPropertiesAndXml(const ComPtr<IPrintJob>& job);
void CheckLateBinding(const ComPtr<IPrintJob>& job);
/// Changes to a child that the job returns are visible in the job.
void CheckChildren(const ComPtr<IPrintJob>& job);
/// The job accepts a child of the calling apartment and calls back into it.
void CheckOwnChild(const ComPtr<IPrintJob>& job);
void CheckOutParameters(const ComPtr<IPrintJob>& job);
/// Failures reach the caller with their HRESULT, and with their description through IDispatch::Invoke. Not
/// every runtime marshals the error information of a vtable call, so that is not checked.
void CheckErrors(const ComPtr<IPrintJob>& job);

/// All of the above.
void CheckPrintJob(const ComPtr<IPrintJob>& job);
