// What the model said of a failure while it was at work: its status line goes on to the outcome of the whole. Main
// thread.
#pragma once

#include "CorvaneApp/Model/AppModel.h"

namespace corvane::ctl {

class FailureWatch {
public:
    // Outlives the watch.
    explicit FailureWatch(AppModel& model)
        : m_connection(QObject::connect(&model.status(), &StatusPart::statusMessageChanged, [this, &model] {
              if (model.status().statusMessage().startsWith(QLatin1String("Failed")))
                  m_failure = model.status().statusMessage();
          })) {}
    ~FailureWatch() { QObject::disconnect(m_connection); }
    FailureWatch(const FailureWatch&) = delete;
    FailureWatch& operator=(const FailureWatch&) = delete;

    // The last one; empty if there was none.
    [[nodiscard]] const QString& failure() const { return m_failure; }

private:
    QString m_failure;
    QMetaObject::Connection m_connection;
};

} // namespace corvane::ctl
