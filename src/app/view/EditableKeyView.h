#pragma once
// The API key's field: the stored key, hidden until it is asked for, and "Edit" at rest; a text field and "Confirm"
// while editing; after a key was taken, the way to what it brought. Main thread.

#include <QtWidgets/QStackedLayout>
#include <QtWidgets/QWidget>
#include <functional>

#include "app/ApiKeyField.h"
#include "ui/GW2Button.h"
#include "ui/GW2TextField.h"
#include "ui/TextBlock.h"

namespace vantor {

// What an accepted key brings.
struct KeyGain {
    std::function<QString()> sentence;                                   // as it is now
    std::function<Subscription(std::function<void()> handler)> observe;  // after each change of it
    std::function<void()> show;                                          // leads to it
};

class EditableKeyView : public QWidget {
public:
    // What is left out of the gain is not shown.
    EditableKeyView(ApiKeyField& field, KeyGain gain, QWidget* parent);

    // As a press on "Edit", if it is not being edited already.
    void edit();

private:
    QWidget* makeRest();
    QWidget* makeEditor();
    void follow();
    void showStored();
    void showMessage();
    void bringIntoSight();

    ApiKeyField& field_;
    QStackedLayout* stack_;
    TextBlock* stored_ = nullptr;
    GW2Button* edit_ = nullptr;
    GW2TextField* typed_ = nullptr;
    GW2Button* confirm_ = nullptr;
    TextBlock* message_ = nullptr;
    GW2Button* reveal_ = nullptr;
    GW2Button* showGain_ = nullptr;
    KeyGain gain_;
    bool revealed_ = false;
    bool wasChecking_ = false;
    Subscription changed_;
    Subscription gained_;
};

}  // namespace vantor
