#pragma once

namespace ktl {

// Titles of message boxes.
inline constexpr const char* kApplicationTitle = "KestrelLedger - Standing Instruction";
inline constexpr const char* kVendorTitle = "Kestrel Ledger";
inline constexpr const char* kSavingTitle = "Saving Information";
inline constexpr const char* kDeniedTitle = "Permission Denied";

}  // namespace ktl
