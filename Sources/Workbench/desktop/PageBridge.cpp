#include "Workbench/desktop/PageBridge.hpp"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>
#include <utility>

#include "Workbench/desktop/ScriptValues.hpp"

namespace workbench {

namespace {

// %1: Qt's web channel library, %2: the object's name, %3: its function names as a JSON array. A call that
// has to wait is answered by a signal; signals for an earlier page find nobody.
const char* const injected = R"js((() => {
%1
const calls = new Map();
const page = Math.random() + "/";
const answered = (key, failed, value) => {
    calls.get(key)?.[failed ? "reject" : "resolve"](failed ? new Error(value) : value);
    calls.delete(key);
};
const bridge = new Promise(done => new QWebChannel(qt.webChannelTransport, channel => {
    channel.objects.host.answered.connect(answered);
    done(channel.objects.host);
}));
Object.defineProperty(window, "__workbench", {value: bridge});
const object = window[%2] = {};
let last = 0;
for (const name of %3) {
    object[name] = argument => bridge.then(host => new Promise((resolve, reject) => {
        const key = page + ++last;
        calls.set(key, {resolve, reject});
        host.call(key, name, argument === undefined ? null : argument)
            .then(answer => answer && answered(key, ...answer));
    }));
}
})();)js";

// %1: number of the evaluation, %2: the script as a JSON string. False when the page has no bridge (yet).
const char* const evaluation = R"js((host => host ? (host.then(host => Promise.resolve()
    .then(() => (0, eval)(%2))
    .then(value => JSON.stringify(value === undefined ? null : value))
    .then(text => host.evaluated(%1, false, text), error => host.evaluated(%1, true, String(error)))), true)
    : false)(window.__workbench);)js";

QString Quoted(const QString& text) {
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

}  // namespace

QString PageBridge::InjectedScript() const {
    QFile library(":/qtwebchannel/qwebchannel.js");
    if (scriptObject == nullptr || !library.open(QIODevice::ReadOnly)) return {};

    QJsonArray names;
    for (const auto& item : scriptObject->GetItemTable())
        names.append(ToQString(*item.key));
    return QString(injected).arg(QString::fromUtf8(library.readAll()),
                                 Quoted(ToQString(scriptObject->GetName())),
                                 QString::fromUtf8(QJsonDocument(names).toJson(QJsonDocument::Compact)));
}

QString PageBridge::EvaluationScript(const QString& script, OnResult onResult) {
    evaluations.emplace(++lastEvaluation, std::move(onResult));
    return QString(evaluation).arg(QString::number(lastEvaluation), Quoted(script));
}

void PageBridge::AbandonEvaluations() {
    const auto abandoned = std::exchange(evaluations, {});
    for (const auto& [number, onResult] : abandoned)
        onResult(true, "the page was left");
}

QVariant PageBridge::call(const QString& key, const QString& function, const QVariant& argument) {
    if (waiting == 0 && !queue.IsHeld()) {
        const auto [failed, value] = Call(function, argument);
        return QVariantList{failed, value};
    }
    ++waiting;
    queue.Post([bridge = QPointer(this), key, function, argument] {
        if (!bridge) return;
        --bridge->waiting;
        const auto [failed, value] = bridge->Call(function, argument);
        if (bridge) emit bridge->answered(key, failed, value);
    });
    return {};
}

std::pair<bool, QVariant> PageBridge::Call(const QString& function, const QVariant& argument) const {
    try {
        const auto& items = scriptObject->GetItemTable();
        const GS::UniString name = ToUniString(function);
        if (!items.ContainsKey(name)) return {true, "There is no function " + function + "."};
        const GS::Ref<DG::JSFunction> callable = GS::DynamicCast<DG::JSFunction>(items[name]);
        return {false, FromScriptValue(callable->Call(ToScriptValue(argument)))};
    } catch (const GS::Exception& exception) {
        return {true, ToQString(exception.GetMessage())};
    } catch (const std::exception& exception) {
        return {true, QString::fromUtf8(exception.what())};
    }
}

void PageBridge::evaluated(int number, bool failed, const QString& text) {
    const auto found = evaluations.find(number);
    if (found == evaluations.end()) return;
    const OnResult onResult = std::move(found->second);
    evaluations.erase(found);
    onResult(failed, text);
}

}  // namespace workbench
