#pragma once

#include <string_view>

#include "velweb/position_parts.h"

/// The forms in which aircraft report where they are; positions.cpp tells which
/// label has which. Each takes the whole text of a message, without blanks
/// before it, and gives a position only where the text has that form as far as
/// the position reaches: digits that run on are counted, so that a lost digit
/// never lets the next number slip into a coordinate. The examples stand above
/// the definitions and in docs/formats/kml.md.
namespace vel {

// Reports behind POS and the like (forms_reports.cpp).
Found presentPosition(std::string_view text);
Found reportAnywhere(std::string_view text);
Found reportAtStart(std::string_view text);
Found starReport(std::string_view text);
Found bracketReport(std::string_view text);
Found airportsAndPoint(std::string_view text);
Found pointLine(std::string_view text);
Found locationField(std::string_view text);
Found compactReport(std::string_view text);
Found statusReport(std::string_view text);
Found progressReport(std::string_view text);
Found eventReport(std::string_view text);
Found feedbackReport(std::string_view text);
Found slashPosition(std::string_view text);
Found prefixedPosition(std::string_view text);
Found automaticPosition(std::string_view text);

// Reports of an aircraft's monitoring system (forms_monitoring.cpp).
Found trackRecord(std::string_view text);
Found timedLine(std::string_view text);
Found weatherRecord(std::string_view text);
Found signedLine(std::string_view text);
Found numberedRecord(std::string_view text);
Found flightLegLine(std::string_view text);

// Fields and plain points (forms_fields.cpp).
Found slashFields(std::string_view text);
Found loadReport(std::string_view text);
Found hundredthsReport(std::string_view text);
Found thousandthsReport(std::string_view text);
Found pointAndFeet(std::string_view text);
Found pointInFifthField(std::string_view text);
Found decimalInFifthField(std::string_view text);
Found decimalReport(std::string_view text);
Found secondsAndFeet(std::string_view text);
Found dateAndPoint(std::string_view text);
Found slashMinutes(std::string_view text);
Found flightPhasePoint(std::string_view text);
Found airportsThenPoint(std::string_view text);
Found longitudeAndLatitudeLines(std::string_view text);
Found thousandthsAtStart(std::string_view text);

}  // namespace vel
