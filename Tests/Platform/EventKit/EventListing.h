#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "Platform/EventKit/EKEventStore.h"

/// A store over folders of files alone, asked as "me@example.org" and "myself@example.net".
EKCalendarPlaces placesIn(const std::filesystem::path& folder);

/// All events of a store between two moments as `utc` reads them, in the store's order.
std::vector<std::shared_ptr<const EKEvent>> eventsBetween(const EKEventStore& store,
                                                          std::string_view start,
                                                          std::string_view end);

/// "start<TAB>end<TAB>all-day,cancelled,declined<TAB>title", as in "expected-events.tsv".
std::string lineOf(const EKEvent& event);

/// The lines of all events of 2026.
std::multiset<std::string> linesOf(const EKEventStore& store);

/// Compares with those that "expected-events.tsv" has for a system zone, `leftOut` apart.
void expectLines(const std::multiset<std::string>& found, std::string_view zone,
                 std::string_view leftOut = "");
