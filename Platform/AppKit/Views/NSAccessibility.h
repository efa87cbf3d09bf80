#pragma once

/// What a view is to assistive technologies.
enum class NSAccessibilityRole {
  None,  ///< Not told of; the views in it are.
  StaticText,
  Image,
  Button,
  Table,
  Row,
  Cell,
};
