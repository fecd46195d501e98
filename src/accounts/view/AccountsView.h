#pragma once
// The accounts panel: the stored logins with their fill and delete buttons, a form that adds one, and the notes. It
// shows a copy of the store's user names, taken anew after each change; no password leaves the store for it. Main
// thread.

#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>
#include <functional>
#include <string>
#include <vector>

#include "accounts/AccountsCredentials.h"
#include "ui/GW2Button.h"
#include "ui/GW2TextField.h"

namespace vantor {

class AccountsView : public QWidget {
public:
    using Fill = std::function<void(const std::string& username)>;

    // fill: types the login into the game.
    AccountsView(AccountsCredentials& credentials, Fill fill, QWidget* parent);

private:
    QWidget* makeForm();
    void showAccounts();
    void showRow(const std::string& username);
    void add();
    void remove(const std::string& username);

    AccountsCredentials& credentials_;
    Fill fill_;
    std::vector<std::string> accounts_;
    QVBoxLayout* rows_;
    GW2TextField* username_ = nullptr;
    GW2TextField* password_ = nullptr;
    Subscription changed_;
};

}  // namespace vantor
