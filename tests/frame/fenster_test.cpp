#include "frame/fenster.h"
#include "frame/form.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace folio;

TEST(Fenster, CentresAndKeepsOnTop) {
    Form form("Auswahl");
    form.set("Width", Value(9000));
    form.set("Height", Value(6000));
    fenster_zentrieren(form);
    EXPECT_EQ(form.get("MousePointer"), Value(MausSanduhr));
    EXPECT_EQ(form.get("Left").toInt(), (1920 * 15 - 9000) / 2);
    EXPECT_EQ(form.get("Top").toInt(), (1080 * 15 - 6000) / 2);

    EXPECT_TRUE(fenster_vordergrund(form, -1, true));
    EXPECT_TRUE(form.get("AlwaysOnTop").toBool());
    EXPECT_TRUE(fenster_vordergrund(form, 0, false));
    EXPECT_FALSE(form.get("AlwaysOnTop").toBool());
    EXPECT_FALSE(fenster_vordergrund(form, 2, true));
}

TEST(Fenster, FileSizeAndWriteProtection) {
    test::TempDir dir;
    const std::string file = dir.file("a.SF6");
    std::ofstream(file) << "12345";
    EXPECT_EQ(datei_groesse(file), 5);
    EXPECT_EQ(datei_groesse(""), 0);
    EXPECT_EQ(datei_groesse(dir.file("missing")), 0);

    EXPECT_FALSE(schreibgeschuetzt(file));
    EXPECT_TRUE(schreibgeschuetzt(dir.file("missing"))); // a missing file counts as protected
    std::filesystem::permissions(file, std::filesystem::perms::owner_read |
                                           std::filesystem::perms::group_read);
    EXPECT_TRUE(schreibgeschuetzt(file));
}
