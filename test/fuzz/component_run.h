#pragma once

#include "support/recording_host.h"

/// Configures and runs a component on the host through its exports, asks all that can be asked, and
/// ends the program where an answer breaks a promise: a code without a message, a result that the
/// reference host's reader refuses, a document that is not given back.
void RunComponent(RecordingHost& host);

/// Ends the program, so that a fuzzer keeps its input.
void Require(bool holds, const char* what);
