#pragma once

#include "window/ground/EnableAll.h"
#include "window/ground/Named.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>

class QAbstractButton;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;

namespace tracelet {

// Pieces that the settings dialogs are made of.

/// Columns of the grid inside a frame: caption, field, unit.
enum FrameColumn { CaptionColumn, FieldColumn, UnitColumn };

/// The grid inside a frame (or of a layout of its own, when `frame` is null) whose captions take the room
/// that the widest caption of the dialog needs: fields then stand in one line across frames.
[[nodiscard]] QGridLayout* FrameGrid(QWidget* frame, const QString& widestCaption);

/// Puts `field` with its caption into the next row of the grid; the caption also names the field to assistive
/// technology. Returns the caption.
QLabel* AddRow(QGridLayout* grid, const QString& labelName, const QString& caption, QWidget* field);

/// Puts a unit behind the field of the grid's last row.
QLabel* AddUnit(QGridLayout* grid, const QString& labelName, const QString& unit);

/// A label that shows a fact: plain text that can be selected and copied.
[[nodiscard]] QLabel* FactLabel(const QString& name);

/// A box for a number.
[[nodiscard]] QLineEdit* NumberBox(const QString& name, const QString& text = {});

/// Number in a box; other text raises "Type mismatch" or "Overflow".
[[nodiscard]] std::int32_t LongIn(const QLineEdit* box);
[[nodiscard]] double DoubleIn(const QLineEdit* box);

/// Replaces the items of a list; nothing is selected, no handler runs.
void Refill(QComboBox* list, const QStringList& items);

/// Shows a position of a list, or the state of a box or option, without running its handler.
void Show(QComboBox* list, int position);
void Show(QAbstractButton* button, bool checked);

/// Runs `handler` once for each choice made in the list, of the item that is selected already too.
void OnChosen(QComboBox* list, const std::function<void()>& handler);

/// Runs `handler` once each time the option is chosen, by a click on the selected option too.
void OnChosen(QAbstractButton* option, const std::function<void()>& handler);

} // namespace tracelet
