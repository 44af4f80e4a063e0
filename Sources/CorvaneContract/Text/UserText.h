// The words that a user may read and that are made below the window, through the translation: English where none is
// installed, as in corvanectl and in the worker. What is written to a file or sent out is data and never comes from
// here. Any thread, but not before main: a constant of a file would keep the English of a moment without translation.
#pragma once

#include <QCoreApplication>

namespace corvane {

struct UserText {
    Q_DECLARE_TR_FUNCTIONS(UserText)
};

} // namespace corvane
