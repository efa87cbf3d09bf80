#pragma once

/// What a view in a row of the dropdown answers besides being a view. The rows hand it down to all
/// views in them that are one.
class DropdownElement {
 public:
  virtual ~DropdownElement() = default;

  /// Takes the colours and fonts of the present theme.
  virtual void updateColors() {}
  /// Shows that the row around it has, or has no more, the highlight.
  virtual void setMenuItemHighlighted(bool) {}
};
