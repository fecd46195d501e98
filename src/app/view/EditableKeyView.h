#pragma once
// The API key's field: the stored key and "Edit" at rest, a text field and "Confirm" while editing. Main thread.

#include <QtWidgets/QStackedLayout>
#include <QtWidgets/QWidget>

#include "app/ApiKeyField.h"
#include "ui/GW2Button.h"
#include "ui/GW2TextField.h"
#include "ui/TextBlock.h"

namespace vantor {

class EditableKeyView : public QWidget {
public:
    EditableKeyView(ApiKeyField& field, QWidget* parent);

private:
    QWidget* makeRest();
    QWidget* makeEditor();
    void follow();
    void showMessage();
    void bringIntoSight();

    ApiKeyField& field_;
    QStackedLayout* stack_;
    TextBlock* stored_ = nullptr;
    GW2Button* edit_ = nullptr;
    GW2TextField* typed_ = nullptr;
    GW2Button* confirm_ = nullptr;
    TextBlock* message_ = nullptr;
    bool wasChecking_ = false;
    Subscription changed_;
};

}  // namespace vantor
