#pragma once

#include "tests/support/ComClient.h"

// What any client does with a print job. The job may live in another apartment or another process: the
// results are the same.

/// Whether calls to the object leave the calling apartment.
bool IsProxy(IUnknown* object);

void CheckPropertiesAndXml(const ComPtr<IPrintJob>& job);
void CheckLateBinding(const ComPtr<IPrintJob>& job);
/// Children are handed out, and what is done to them is seen in the job.
void CheckChildren(const ComPtr<IPrintJob>& job);
/// The job takes a child of the calling apartment and calls back into it.
void CheckOwnChild(const ComPtr<IPrintJob>& job);
void CheckOutParameters(const ComPtr<IPrintJob>& job);
/// Failures reach the caller with their number, and with their description where the call itself carries it,
/// as IDispatch::Invoke does. A direct call's error information is carried by some runtimes' channels only.
void CheckErrors(const ComPtr<IPrintJob>& job);

/// All of the above.
void CheckPrintJob(const ComPtr<IPrintJob>& job);
