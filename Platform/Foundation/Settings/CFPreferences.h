#pragma once

#include <string_view>

#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// The stored value of a key in a preference domain; null if there is none. What this process has
/// set counts at once, what another one has written as soon as its file is there.
PropertyList CFPreferencesCopyAppValue(std::string_view key, std::string_view applicationId);

/// Sets a key, or removes it with a null value. Nothing is written before the domain is
/// synchronised. Raises `std::invalid_argument` for a value that would not read back the same.
void CFPreferencesSetAppValue(std::string_view key, const PropertyList& value,
                              std::string_view applicationId);

/// Writes what has been set since the last call. False if it could not be written; the reason is in
/// the log and the next call tries again.
bool CFPreferencesAppSynchronize(std::string_view applicationId);

/// Every stored key of a domain with its value, overrides included.
PropertyList::Dictionary CFPreferencesCopyAllValues(std::string_view applicationId);

/// For a process that looks through other settings than the stored ones, such as a tool: `value`
/// answers for the key in this process, whatever is stored, and is never written. A null value
/// makes the key answer nothing.
void setPreferenceOverride(std::string_view key, const PropertyList& value,
                           std::string_view applicationId);

/// From here on this process sees nothing of what the domain's file holds.
void ignoreStoredPreferences(std::string_view applicationId);

/// Whether nothing but an override can answer for a key: it has one, or the domain's file is
/// ignored.
bool CFPreferencesAppValueIsForced(std::string_view key, std::string_view applicationId);

/// Forgets domains, overrides and unwritten changes; the next use starts anew from the files.
void resetPreferences();
