#pragma once

namespace npar_host {

/// What a page does beyond being read: copies a sentence, sorts and filters the overview. It has
/// neither "<" nor "&", so that it is the same in XHTML. Without it nothing is missing but that.
extern const char* const kPageScript;
/// The script's digest; the page's policy lets nothing else run.
extern const char* const kPageScriptHash;

}  // namespace npar_host
