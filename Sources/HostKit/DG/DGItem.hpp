#pragma once

#include <vector>

#include "DGPanel.hpp"
#include "UniString.hpp"

namespace DG {

class Button;
class ButtonItemObserver;

// What a dialog's resource has at a number, from 1. Make an item after its panel and destroy it before; there
// is one at most for a number.
class Item {
  public:
    virtual ~Item();
    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;

    short GetId() const { return number; }

  protected:
    Item(const Reference& panel, short number);

    const std::shared_ptr<hostkit::dg::PanelState>& Panel() const { return panel; }

  private:
    std::shared_ptr<hostkit::dg::PanelState> panel;
    short number;
};

// An item that shows one text.
class TextItem : public Item {
  public:
    void SetText(const GS::UniString& text);
    GS::UniString GetText() const;

  protected:
    using Item::Item;
};

class LeftText : public TextItem {
  public:
    LeftText(const Reference& panel, short item) : TextItem(panel, item) {}
};

// A field for a line of text, as long as its resource allows.
class TextEdit : public TextItem {
  public:
    TextEdit(const Reference& panel, short item) : TextItem(panel, item) {}
};

class ButtonClickEvent {
  public:
    explicit ButtonClickEvent(const Button* source) : source(source) {}

    const Button* GetSource() const { return source; }

  private:
    const Button* source;
};

class Button : public TextItem {
  public:
    Button(const Reference& panel, short item) : TextItem(panel, item) {}

    void Attach(ButtonItemObserver& observer);
    void Detach(ButtonItemObserver& observer);

    const std::vector<ButtonItemObserver*>& Observers() const { return observers; }

  private:
    std::vector<ButtonItemObserver*> observers;
};

class ButtonItemObserver {
  public:
    virtual ~ButtonItemObserver() = default;

    virtual void ButtonClicked(const ButtonClickEvent& event);
};

// Observes whatever items of a panel it is an observer of as well, such as a ButtonItemObserver of buttons.
class CompoundItemObserver {
  public:
    virtual ~CompoundItemObserver() = default;
};

}  // namespace DG
