// The functions that the host calls in this page. A classic script, loaded before everything else, so that a
// call that comes while the modules are still loading is kept for them instead of failing.
(function () {
    const waiting = [];
    let receive = (name) => waiting.push(name);

    const names = [
        "RequestFileName",
        "CompleteExportModel",
        "FailExportModel",
        "CompleteExportPlan",
        "FailExportPlan",
        "InsertViewpoint",
        "CompleteImportModels",
        "UpdateSelectedElements",
        "CompleteExportPublish",
        "FailedExportPublish",
    ];
    for (const name of names) {
        window[name] = () => {
            receive(name);
        };
    }

    /** Hands the calls received so far, then every later one, to the functions of these names. */
    window.listenToPageCalls = (handlers) => {
        receive = (name) => handlers[name]();
        waiting.splice(0).forEach(receive);
    };
})();
