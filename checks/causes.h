// Why something is found.
#pragma once

#include "checks/collector.h"

namespace NChecks {

// Those of Rule::NumberUnreadable are in unreadable.h.
inline constexpr Cause kEmptyCell{Rule::NumberEmpty, 0};
inline constexpr Cause kEmptyRow{Rule::NumberEmpty, 1};
inline constexpr Cause kNoNumberHeld{Rule::NumberEmpty, 2};
inline constexpr Cause kEmptyColumn{Rule::NumberEmpty, 3};

inline constexpr Cause kNegative{Rule::NumberRange, 0};
inline constexpr Cause kAboveLimit{Rule::NumberRange, 1};

inline constexpr Cause kExponent{Rule::NumberExponent, 0};

inline constexpr Cause kDuplicate{Rule::NumberDuplicate, 0, Severity::Warning};

inline constexpr Cause kLetters{Rule::NotationMixed, 0};
inline constexpr Cause kHexWords{Rule::NotationMixed, 1, Severity::Warning};
inline constexpr Cause kEitherCodeOrHex{Rule::NotationMixed, 2, Severity::Warning};
inline constexpr Cause kNumberAmongCodes{Rule::NotationMixed, 3, Severity::Warning};
inline constexpr Cause kCodeAmongNumbers{Rule::NotationMixed, 4, Severity::Warning};
inline constexpr Cause kLeadingZeros{Rule::NotationMixed, 5, Severity::Warning};
inline constexpr Cause kCodeNotTaken{Rule::NotationMixed, 6};
inline constexpr Cause kPerhapsHex{Rule::NotationMixed, 7, Severity::Warning};
inline constexpr Cause kCodeRefusesNumbers{Rule::NotationMixed, 8};
inline constexpr Cause kCodeWidth{Rule::NotationMixed, 9, Severity::Warning};
inline constexpr Cause kHexHeader{Rule::NotationMixed, 10, Severity::Warning};

inline constexpr Cause kNearMiss{Rule::LayoutNearMiss, 0};
inline constexpr Cause kTitle{Rule::LayoutNearMiss, 1};
inline constexpr Cause kFirstRowIsData{Rule::LayoutNearMiss, 2};
inline constexpr Cause kOtherColumn{Rule::LayoutNearMiss, 3};
inline constexpr Cause kHeaderAgain{Rule::LayoutNearMiss, 4};
inline constexpr Cause kOtherColumnPerhaps{Rule::LayoutNearMiss, 5, Severity::Warning};
inline constexpr Cause kOtherDescription{Rule::LayoutNearMiss, 6, Severity::Warning};

inline constexpr Cause kColumnWithoutHeader{Rule::ColumnLost, 0};
inline constexpr Cause kBehindEnd{Rule::ColumnLost, 1};
inline constexpr Cause kColumnsRight{Rule::ColumnLost, 2};
inline constexpr Cause kNoteRight{Rule::ColumnLost, 3, Severity::Warning};

inline constexpr Cause kUnfinishedQuote{Rule::RowLost, 0};
inline constexpr Cause kCarriageReturns{Rule::RowLost, 1};
inline constexpr Cause kSwallowedRows{Rule::RowLost, 2};
inline constexpr Cause kRowsBelow{Rule::RowLost, 3};
inline constexpr Cause kNoteBelow{Rule::RowLost, 4, Severity::Warning};
inline constexpr Cause kNoRows{Rule::RowLost, 5};

inline constexpr Cause kNotXml{Rule::TextNotXml, 0};

inline constexpr Cause kMark{Rule::TextEncoding, 0};
inline constexpr Cause kUtf8{Rule::TextEncoding, 1};
inline constexpr Cause kWindows{Rule::TextEncoding, 2};
inline constexpr Cause kReplaced{Rule::TextEncoding, 3};
inline constexpr Cause kHalfPair{Rule::TextEncoding, 4};
inline constexpr Cause kStray{Rule::TextEncoding, 5};
inline constexpr Cause kCutCharacter{Rule::TextEncoding, 6};

inline constexpr Cause kRounded{Rule::ValueRounded, 0};

inline constexpr Cause kSameHeader{Rule::ItemHeader, 0, Severity::Warning};
inline constexpr Cause kUnknownName{Rule::ItemHeader, 1, Severity::Warning};

inline constexpr Cause kEmptyDescription{Rule::DescriptionEmpty, 0, Severity::Warning};
inline constexpr Cause kNoDescription{Rule::DescriptionEmpty, 1, Severity::Warning};

}  // namespace NChecks
