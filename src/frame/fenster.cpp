#include "frame/fenster.h"

#include "engine/errors.h"

#include "frame/form.h"
#include "frame/platform.h"

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace folio {

void fenster_zentrieren(Form& form) {
    form.set("MousePointer", Value(MausSanduhr));
    const Platform& p = platform();
    form.set("Left", Value((p.screenWidth() - form.get("Width").toInt()) / 2));
    form.set("Top", Value((p.screenHeight() - form.get("Height").toInt()) / 2));
}

bool fenster_vordergrund(Form& form, int modus, bool aktivieren) {
    if (modus < -1 || modus > 1)
        return false;
    const int flags = 3 + (aktivieren ? 0 : 16); // neither move nor size; don't activate
    const int position = modus == -1 ? -1 : modus == 0 ? -2 : 0;
    try {
        if (!platform().setWindowPos(form, position, flags))
            return false;
        if (modus != 1)
            form.set("AlwaysOnTop", Value(modus == -1));
        return true;
    } catch (const Error&) {
        return false;
    }
}

double datei_groesse(const std::string& pfad) {
    if (pfad.empty())
        return 0;
    std::error_code ec;
    const auto size = std::filesystem::file_size(pfad, ec);
    return ec ? 0 : static_cast<double>(size);
}

bool schreibgeschuetzt(const std::string& pfad) {
    struct stat st {};
    if (::stat(pfad.c_str(), &st) != 0)
        return true;
    // Write-protected means: no write bit is set (the attribute of the file itself, which
    // counts even for an administrator), or this user may not write it.
    return (st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 || ::access(pfad.c_str(), W_OK) != 0;
}

} // namespace folio
