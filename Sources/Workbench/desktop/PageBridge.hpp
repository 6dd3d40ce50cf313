#pragma once

#include <QObject>
#include <QVariant>
#include <functional>
#include <unordered_map>
#include <utility>

#include "DGModule.hpp"
#include "Workbench/api/MainQueue.hpp"

namespace workbench {

/// The page's way into the host: what the injected script calls over the web channel.
class PageBridge : public QObject {
    Q_OBJECT

  public:
    /// JSON text of the value, or the text of what was thrown.
    using OnResult = std::function<void(bool failed, const QString& text)>;

    /// While the queue is held, calls wait in it: they never come in the middle of other work.
    explicit PageBridge(MainQueue& queue) : queue(queue) {}

    void SetObject(GS::Ref<DG::JSObject> object) { scriptObject = std::move(object); }

    /// The script to inject before a page's own scripts run: defines the registered object, whose functions
    /// answer promises. Calls that come before the channel is up wait for it.
    QString InjectedScript() const;

    /// The script that evaluates `script` in the page, waits for a promise, and reports to `onResult`.
    QString EvaluationScript(const QString& script, OnResult onResult);

    /// The page goes, or has no bridge: answers what is under way with an error.
    void AbandonEvaluations();

    /// Calls a function of the object: [false, result], or [true, text] when an exception left it. Null when
    /// the call has to wait; `answered` tells the same later.
    Q_INVOKABLE QVariant call(const QString& key, const QString& function, const QVariant& argument);
    Q_INVOKABLE void evaluated(int evaluation, bool failed, const QString& text);

  signals:
    void answered(const QString& key, bool failed, const QVariant& value);

  private:
    std::pair<bool, QVariant> Call(const QString& function, const QVariant& argument) const;

    MainQueue& queue;
    int waiting = 0;  // calls in the queue; later ones stay behind them
    GS::Ref<DG::JSObject> scriptObject;
    std::unordered_map<int, OnResult> evaluations;
    int lastEvaluation = 0;
};

}  // namespace workbench
