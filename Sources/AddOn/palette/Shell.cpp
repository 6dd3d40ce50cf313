#include "palette/KestranePalette.hpp"

#include "Config.hpp"
#include "host/Menu.hpp"
#include "script/ScriptObject.hpp"

#include <mutex>
#include <utility>

namespace {

constexpr short paletteResId = 32500;
constexpr short browserItem = 1;
constexpr Int32 menuItemIndex = 1;

/// Changed on the main thread only, and then under the guard. So the main thread reads without it, and a job
/// holds it for as long as the palette must stay.
struct Singleton {
    std::mutex guard;
    GS::Ref<KestranePalette> palette;
};

/// Never destroyed: a job may still ask for the palette while the process ends.
Singleton& TheSingleton() {
    static auto* const singleton = new Singleton;
    return *singleton;
}

void Store(GS::Ref<KestranePalette> palette) {
    Singleton& singleton = TheSingleton();
    {
        const std::lock_guard<std::mutex> lock(singleton.guard);
        std::swap(singleton.palette, palette);
    }
    // The previous palette goes outside the lock, because its end may call back.
}

/// Releases the palette when the add-on's image ends.
struct ReleaseAtEnd {
    ReleaseAtEnd() = default;
    ~ReleaseAtEnd() { Store(nullptr); }
    ReleaseAtEnd(const ReleaseAtEnd&) = delete;
    ReleaseAtEnd& operator=(const ReleaseAtEnd&) = delete;
};

}  // namespace

bool KestranePalette::HasInstance() {
    return TheSingleton().palette != nullptr;
}

void KestranePalette::CreateInstance() {
    Store(new KestranePalette());
    static const ReleaseAtEnd releaseAtEnd;  // after the browser's own statics, so it goes before them
    ACAPI_KeepInMemory(true);
}

KestranePalette& KestranePalette::GetInstance() {
    return *TheSingleton().palette;
}

void KestranePalette::WithInstance(const std::function<void(KestranePalette&)>& action) {
    Singleton& singleton = TheSingleton();
    const std::lock_guard<std::mutex> lock(singleton.guard);
    if (singleton.palette != nullptr) action(*singleton.palette);
}

KestranePalette::KestranePalette()
    : DG::Palette(ACAPI_GetOwnResModule(), paletteResId, ACAPI_GetOwnResModule(), GS::Guid(KESTPALETTEGUID)),
      browser(GetReference(), browserItem) {
    Attach(*this);
    BeginEventProcessing();
    InitBrowserControl();
}

KestranePalette::~KestranePalette() {
    EndEventProcessing();
    Detach(*this);
}

void KestranePalette::InitBrowserControl() {
    browser.LoadURL(webAppUrl);
    browser.DisableContextMenu();
    // The object belongs to the page being loaded, so the load comes first.
    RegisterAPIJavaScriptObject(browser);
}

void KestranePalette::Show() {
    DG::Palette::Show();
    SetMenuItemCheckedState(true);
}

void KestranePalette::Hide() {
    DG::Palette::Hide();
    SetMenuItemCheckedState(false);
}

void KestranePalette::SetMenuItemCheckedState(bool checked) {
    SetMenuItemChecked(menuId, menuItemIndex, checked);
}

void KestranePalette::PanelResized(const DG::PanelResizeEvent& event) {
    BeginMoveResizeItems();
    browser.Resize(event.GetHorizontalChange(), event.GetVerticalChange());
    EndMoveResizeItems();
}

void KestranePalette::PanelCloseRequested(const DG::PanelCloseRequestEvent&, bool* accepted) {
    Hide();
    *accepted = true;
}
