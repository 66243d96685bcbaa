#include "generate_tree.h"

#include "database/schema/schema.h"
#include "engine/engine.h"
#include "engine/file_beside.h"
#include "engine/recordset.h"

#include <algorithm>
#include <array>
#include <deque>
#include <filesystem>
#include <random>
#include <vector>

namespace fs = std::filesystem;

namespace folio::generator {

namespace {

constexpr std::array<const char*, 24> MaleNames = {
    "Johann",  "Georg",   "Friedrich", "Wilhelm", "Heinrich", "Karl",      "Josef",  "Franz",
    "Michael", "Andreas", "Jakob",     "Peter",   "Matthias", "Anton",     "Ludwig", "Paul",
    "Otto",    "Ernst",   "Hermann",   "Konrad",  "Martin",   "Sebastian", "Lukas",  "Felix"};
constexpr std::array<const char*, 24> FemaleNames = {
    "Maria",     "Anna",     "Elisabeth", "Katharina", "Margaretha", "Barbara",
    "Magdalena", "Theresia", "Sophie",    "Christina", "Johanna",    "Franziska",
    "Rosa",      "Luise",    "Emma",      "Frieda",    "Helene",     "Gertrud",
    "Klara",     "Agnes",    "Ursula",    "Martha",    "Lena",       "Hannah"};
constexpr std::array<const char*, 32> Surnames = {
    "Müller",   "Schmidt",  "Schneider", "Fischer",    "Weber",  "Meyer",   "Wagner",  "Becker",
    "Schulz",   "Hoffmann", "Schäfer",   "Koch",       "Bauer",  "Richter", "Klein",   "Wolf",
    "Schröder", "Neumann",  "Schwarz",   "Zimmermann", "Braun",  "Krüger",  "Hofmann", "Hartmann",
    "Lange",    "Schmitt",  "Werner",    "Schmitz",    "Krause", "Meier",   "Lehmann", "Huber"};
constexpr std::array<const char*, 16> Occupations = {
    "Bauer",    "Schmied", "Müller",   "Bäcker",  "Weber",      "Schneider",
    "Lehrer",   "Pfarrer", "Knecht",   "Magd",    "Tagelöhner", "Zimmermann",
    "Kaufmann", "Wirt",    "Schuster", "Fuhrmann"};
constexpr std::array<const char*, 12> Regions = {
    "Bayern",    "Württemberg", "Baden",   "Hessen",   "Sachsen",   "Thüringen",
    "Westfalen", "Pfalz",       "Franken", "Schwaben", "Schlesien", "Ostpreußen"};

// Event kinds of the catalogue that the generator uses.
enum Kind {
    Geburt = 1,
    Taufe = 2,
    Konfirmation = 3,
    Tod = 5,
    Beerdigung = 6,
    Beruf = 9,
    StandesamtlicheHeirat = 10,
    KirchlicheTrauung = 11,
    Wohnort = 15,
    Volkszaehlung = 16,
    Berufstaetigkeit = 44
};

// A small random source of our own, so that a seed gives the same tree everywhere.
class Random {
public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}
    std::int64_t below(std::int64_t n) {
        return static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(n));
    }
    bool chance(int percent) { return below(100) < percent; }
    template <class A> const char* pick(const A& a) {
        return a[static_cast<std::size_t>(below(static_cast<std::int64_t>(a.size())))];
    }

private:
    std::mt19937_64 engine_;
};

struct Date {
    int day = 0, month = 0, year = 0;
};

std::string two(int n) {
    return (n < 10 ? "0" : "") + std::to_string(n);
}
std::string four(int n) {
    std::string s = std::to_string(n);
    return std::string(s.size() < 4 ? 4 - s.size() : 0, '0') + s;
}
// The display text and the sort key of a partial date.
std::string dateText(const Date& d) {
    if (d.year == 0)
        return "";
    if (d.day)
        return two(d.day) + "." + two(d.month) + "." + four(d.year);
    return d.month ? std::string(std::array<const char*, 12>{
                         "Jan", "Feb", "Mär", "Apr", "Mai", "Jun", "Jul", "Aug", "Sep", "Okt",
                         "Nov", "Dez"}[static_cast<std::size_t>(d.month - 1)]) +
                         " " + four(d.year)
                   : four(d.year);
}
std::string sortKey(const Date& d) {
    if (d.year == 0)
        return "";
    std::string key = four(d.year);
    if (d.month)
        key += two(d.month);
    if (d.month && d.day)
        key += two(d.day);
    return key;
}

struct Person {
    std::int64_t id;
    bool male;
    std::string given, surname;
    Date birth, death;
    std::int64_t father = 0, mother = 0, place = 0;
};

class Writer {
public:
    Writer(dao::Database& db, const Options& options) : random_(options.seed) {
        for (const char* t : {"Daten", "Ereignis", "Ereignis_DS", "Daten_DS", "Quellen_DS", "Ort",
                              "Dokument", "Notiz", "Bilder", "Adressen", "Adressen_DS"})
            tables_.push_back(db.OpenRecordset(t));
    }

    Counts run(std::int64_t persons);

private:
    dao::Recordset& table(std::size_t i) { return *tables_[i]; }
    dao::Recordset& daten() { return table(0); }
    dao::Recordset& ereignis() { return table(1); }
    dao::Recordset& ereignisDs() { return table(2); }
    dao::Recordset& datenDs() { return table(3); }
    dao::Recordset& quellenDs() { return table(4); }

    void places(std::int64_t count);
    void records(std::int64_t persons);
    Date dateAround(int year, bool partial);
    std::int64_t person(bool male, const std::string& surname, int bornAround, std::int64_t father,
                        std::int64_t mother);
    std::int64_t event(int kind, const Date& date, std::int64_t place, const std::string& grund,
                       const std::string& listentext);
    void eventLink(std::int64_t person, std::int64_t event, const char* role);
    void sourceLink(const char* artQuelle, std::int64_t quelle, const char* artZiel,
                    std::int64_t ziel);
    void personEvents(const Person& p);
    void marriage(const Person& a, const Person& b);
    std::int64_t placeOf() {
        return placeIds_[static_cast<std::size_t>(
            random_.below(static_cast<std::int64_t>(placeIds_.size())))];
    }

    Random random_;
    std::vector<std::unique_ptr<dao::Recordset>> tables_;
    std::vector<std::int64_t> placeIds_;
    std::vector<std::string> placeNames_;
    std::vector<Person> people_;
    std::int64_t nextEvent_ = 1, nextLink_ = 1, nextPersonLink_ = 1, nextSourceLink_ = 1;
    std::int64_t sources_ = 0, notes_ = 0, pictures_ = 0, addresses_ = 0;
    Counts counts_;
};

Date Writer::dateAround(int year, bool partial) {
    Date d;
    d.year = year;
    if (!partial || !random_.chance(15)) {
        d.month = static_cast<int>(random_.below(12)) + 1;
        if (!partial || !random_.chance(10))
            d.day = static_cast<int>(random_.below(28)) + 1;
    }
    return d;
}

void Writer::places(std::int64_t count) {
    dao::Recordset& ort = table(5);
    for (std::int64_t i = 1; i <= count; ++i) {
        const bool region = i <= static_cast<std::int64_t>(Regions.size());
        const std::string name =
            region ? Regions[static_cast<std::size_t>(i - 1)]
                   : std::string(random_.pick(Surnames)) + "dorf " + std::to_string(i);
        ort.AddNew();
        ort.set("Counter", Value(RecordId(i)));
        ort.set("Markierung", Value(false));
        ort.set("Marker", Value(0));
        ort.set("Name", Value(region ? name
                                     : name + ", " +
                                           Regions[static_cast<std::size_t>(i % Regions.size())]));
        ort.set("Oberort",
                Value(RecordId(region ? 0 : 1 + i % static_cast<std::int64_t>(Regions.size()))));
        ort.set("Bild", Value(RecordId()));
        ort.set("Notiz", Value(RecordId()));
        ort.set("Status", Value(RecordId()));
        ort.Update();
        if (!region)
            placeIds_.push_back(i);
        placeNames_.push_back(name);
    }
    counts_.places = count;
}

void Writer::records(std::int64_t persons) {
    sources_ = std::max<std::int64_t>(10, persons / 50);
    notes_ = std::max<std::int64_t>(10, persons / 20);
    pictures_ = std::max<std::int64_t>(10, persons / 20);
    addresses_ = std::max<std::int64_t>(5, persons / 100);
    dao::Recordset& dokument = table(6);
    for (std::int64_t i = 1; i <= sources_; ++i) {
        const Date d = dateAround(1650 + static_cast<int>(random_.below(350)), true);
        dokument.AddNew();
        dokument.set("Counter", Value(RecordId(i)));
        dokument.set("Markierung", Value(false));
        dokument.set("Dok_art", Value(std::string(1, "DHTAF"[i % 5])));
        dokument.set("Vorlage", Value(std::string(1, "OKA?H"[i % 5])));
        dokument.set("Listentext", Value("Kirchenbuch " + std::to_string(i) + " "));
        dokument.set("vTag", Value(d.day));
        dokument.set("vMonat", Value(d.month));
        dokument.set("vJahr", Value(d.year));
        dokument.set("vDatum", Value(dateText(d)));
        dokument.set("vSort", Value(sortKey(d)));
        dokument.set("ca", Value(" "));
        dokument.set("Ort", Value(RecordId(placeOf())));
        dokument.Update();
    }
    dao::Recordset& notiz = table(7);
    for (std::int64_t i = 1; i <= notes_; ++i) {
        notiz.AddNew();
        notiz.set("Counter", Value(RecordId(i)));
        notiz.set("Markierung", Value(false));
        notiz.set("Name", Value("Notiz " + std::to_string(i)));
        notiz.set("Memo",
                  Value("Aus den Aufzeichnungen der Familie, Blatt " + std::to_string(i) + "."));
        notiz.set("Dateipfad", Value(""));
        notiz.Update();
    }
    dao::Recordset& bilder = table(8);
    for (std::int64_t i = 1; i <= pictures_; ++i) {
        bilder.AddNew();
        bilder.set("Counter", Value(RecordId(i)));
        bilder.set("Markierung", Value(false));
        bilder.set("bildpfad", Value("Bilder/"));
        bilder.set("bildfile", Value("foto" + std::to_string(i) + ".jpg"));
        bilder.set("bildtext", Value("Foto " + std::to_string(i)));
        bilder.set("groesse", Value(20000 + i % 5000));
        bilder.set("Listentext", Value("Foto " + std::to_string(i) + " "));
        bilder.set("ca", Value(" "));
        bilder.Update();
    }
    dao::Recordset& adressen = table(9);
    for (std::int64_t i = 1; i <= addresses_; ++i) {
        adressen.AddNew();
        adressen.set("Counter", Value(RecordId(i)));
        adressen.set("Markierung", Value(false));
        adressen.set("Adresse", Value("Hauptstraße " + std::to_string(i) + "\r\n" +
                                      placeNames_[static_cast<std::size_t>(
                                          i % static_cast<std::int64_t>(placeNames_.size()))]));
        adressen.set("Listenname", Value("Adresse " + std::to_string(i)));
        adressen.set("Ort", Value(RecordId(placeOf())));
        adressen.Update();
    }
    counts_.sources = sources_;
    counts_.notes = notes_;
    counts_.pictures = pictures_;
    counts_.addresses = addresses_;
}

std::int64_t Writer::person(bool male, const std::string& surname, int bornAround,
                            std::int64_t father, std::int64_t mother) {
    Person p;
    p.id = static_cast<std::int64_t>(people_.size()) + 1;
    p.male = male;
    p.given = male ? random_.pick(MaleNames) : random_.pick(FemaleNames);
    if (random_.chance(30))
        p.given += std::string(" ") + (male ? random_.pick(MaleNames) : random_.pick(FemaleNames));
    p.surname = surname;
    p.birth = dateAround(bornAround, true);
    const int age = 1 + static_cast<int>(random_.below(90));
    if (p.birth.year + age < 2026)
        p.death = dateAround(p.birth.year + age, true);
    p.father = father;
    p.mother = mother;
    p.place = placeOf();

    dao::Recordset& d = daten();
    d.AddNew();
    d.set("Counter", Value(RecordId(p.id)));
    d.set("Markierung", Value(false));
    d.set("Marker", Value(0));
    d.set("Druck", Value(false));
    d.set("Lebt", Value(p.death.year == 0 && p.birth.year > 1930));
    d.set("Geschlecht", Value(male ? "M" : "W"));
    d.set("Vater", Value(RecordId(father)));
    d.set("Mutter", Value(RecordId(mother)));
    d.set("GIVN", Value(p.given));
    d.set("SURN", Value(p.surname));
    d.set("Listentext", Value(p.given + " " + p.surname + " "));
    d.set("GTag", Value(p.birth.day));
    d.set("GMonat", Value(p.birth.month));
    d.set("GJahr", Value(p.birth.year));
    d.set("GDatum", Value(dateText(p.birth)));
    d.set("GSort", Value(sortKey(p.birth)));
    d.set("ca1", Value(" "));
    d.set("GOrt", Value(RecordId(p.place)));
    d.set("STag", Value(p.death.day));
    d.set("SMonat", Value(p.death.month));
    d.set("SJahr", Value(p.death.year));
    d.set("SDatum", Value(dateText(p.death)));
    d.set("SSort", Value(sortKey(p.death)));
    d.set("ca2", Value(" "));
    d.set("SOrt", Value(RecordId(p.death.year ? placeOf() : 0)));
    d.set("Ort", Value(RecordId(p.place)));
    d.set("Bild", Value(RecordId(random_.chance(10) ? 1 + random_.below(pictures_) : 0)));
    d.set("Notiz", Value(RecordId(random_.chance(5) ? 1 + random_.below(notes_) : 0)));
    d.set("Status", Value(RecordId()));
    d.set("OCCU", Value(""));
    d.set("Religion", Value(random_.chance(50) ? "römisch-katholisch" : "evangelisch"));
    d.Update();
    people_.push_back(p);
    ++counts_.persons;
    personEvents(people_.back());
    return p.id;
}

std::int64_t Writer::event(int kind, const Date& date, std::int64_t place, const std::string& grund,
                           const std::string& listentext) {
    dao::Recordset& e = ereignis();
    const std::int64_t id = nextEvent_++;
    e.AddNew();
    e.set("Counter", Value(RecordId(id)));
    e.set("Markierung", Value(false));
    e.set("Marker", Value(0));
    e.set("Art", Value(kind));
    e.set("ca", Value(random_.chance(5) ? "ca.   " : "      "));
    e.set("vTag", Value(date.day));
    e.set("vMonat", Value(date.month));
    e.set("vJahr", Value(date.year));
    e.set("vDatum", Value(dateText(date)));
    e.set("vSort", Value(sortKey(date)));
    e.set("bTag", Value(0));
    e.set("bMonat", Value(0));
    e.set("bJahr", Value(0));
    e.set("bDatum", Value(""));
    e.set("bSort", Value(""));
    e.set("Kurztext", Value(" "));
    e.set("Text", Value(" "));
    e.set("Grund", Value(grund.empty() ? " " : grund));
    e.set("Level", Value(1));
    e.set("Ort", Value(RecordId(place)));
    e.set("Bild", Value(RecordId()));
    e.set("Notiz", Value(RecordId()));
    e.set("Status", Value(RecordId()));
    e.set("Listentext", Value(listentext));
    e.Update();
    ++counts_.events;
    return id;
}

void Writer::eventLink(std::int64_t person, std::int64_t event, const char* role) {
    dao::Recordset& l = ereignisDs();
    l.AddNew();
    l.set("Counter", Value(RecordId(nextLink_++)));
    l.set("Quelle", Value(RecordId(person)));
    l.set("Ziel", Value(RecordId(event)));
    l.set("Ursprung", Value(role));
    l.set("ASSO", Value(""));
    l.set("Info", Value(""));
    l.Update();
    ++counts_.eventLinks;
}

void Writer::sourceLink(const char* artQuelle, std::int64_t quelle, const char* artZiel,
                        std::int64_t ziel) {
    dao::Recordset& l = quellenDs();
    l.AddNew();
    l.set("Counter", Value(RecordId(nextSourceLink_++)));
    l.set("Quelle", Value(RecordId(quelle)));
    l.set("Ziel", Value(RecordId(ziel)));
    l.set("Art_Quelle", Value(artQuelle));
    l.set("Art_Ziel", Value(artZiel));
    l.set("Info", Value(""));
    l.Update();
    ++counts_.sourceLinks;
}

void Writer::personEvents(const Person& p) {
    const std::string name = p.given + " " + p.surname;
    const std::int64_t birth = event(Geburt, p.birth, p.place, "", "Geburt von " + name + " ");
    eventLink(p.id, birth, "d");
    sourceLink("E", birth, "U", 1 + random_.below(sources_));
    const bool toSource = random_.chance(80); // else to a note
    sourceLink("D", p.id, toSource ? "U" : "R", 1 + random_.below(toSource ? sources_ : notes_));
    if (random_.chance(80)) {
        const Date d{std::min(p.birth.day + 2, 28), p.birth.month, p.birth.year};
        const std::int64_t baptism = event(Taufe, d, p.place, "", "Taufe von " + name + " ");
        eventLink(p.id, baptism, "d");
        if (!people_.empty() && random_.chance(50))
            eventLink(1 + random_.below(static_cast<std::int64_t>(people_.size())), baptism, "P");
    }
    if (random_.chance(60)) {
        const char* job = random_.pick(Occupations);
        const std::int64_t e = event(random_.chance(50) ? Beruf : Berufstaetigkeit,
                                     dateAround(p.birth.year + 25, true), placeOf(), job,
                                     "Beruf von " + name + " als " + job + " ");
        eventLink(p.id, e, "d");
    }
    if (random_.chance(40))
        eventLink(p.id,
                  event(Wohnort, dateAround(p.birth.year + 30, true), placeOf(), "",
                        "Wohnort von " + name + " "),
                  "d");
    if (random_.chance(30))
        eventLink(p.id,
                  event(Konfirmation, dateAround(p.birth.year + 14, true), p.place, "",
                        "Konfirmation von " + name + " "),
                  "d");
    if (random_.chance(25))
        eventLink(p.id,
                  event(Volkszaehlung, dateAround(p.birth.year + 40, true), p.place, "",
                        "Volkszählung " + name + " "),
                  "d");
    if (p.death.year) {
        const std::int64_t death = event(
            Tod, p.death, placeOf(), random_.chance(20) ? "Typhus" : "", "Tod von " + name + " ");
        eventLink(p.id, death, "d");
        if (random_.chance(80)) {
            const Date b{std::min(p.death.day + 3, 28), p.death.month, p.death.year};
            eventLink(p.id, event(Beerdigung, b, p.place, "", "Beerdigung von " + name + " "), "d");
        }
    }
    if (random_.chance(5)) {
        dao::Recordset& l = table(10);
        l.AddNew();
        l.set("Counter", Value(RecordId(counts_.addressLinks + 1)));
        l.set("Quelle", Value(RecordId(p.id)));
        l.set("Ziel", Value(RecordId(1 + random_.below(addresses_))));
        l.set("Ursprung", Value("D"));
        l.Update();
        ++counts_.addressLinks;
    }
}

void Writer::marriage(const Person& a, const Person& b) {
    const Date date = dateAround(
        std::max(a.birth.year, b.birth.year) + 20 + static_cast<int>(random_.below(8)), true);
    const std::string text =
        "Heirat von " + a.given + " " + a.surname + " mit " + b.given + " " + b.surname + " ";
    const std::int64_t place = placeOf();
    const std::int64_t civil = event(StandesamtlicheHeirat, date, place, "", text);
    eventLink(a.id, civil, "d");
    eventLink(b.id, civil, "d");
    if (random_.chance(70)) {
        const std::int64_t church = event(KirchlicheTrauung, date, place, "", text);
        eventLink(a.id, church, "d");
        eventLink(b.id, church, "d");
        eventLink(1 + random_.below(static_cast<std::int64_t>(people_.size())), church, "T");
    }
    dao::Recordset& l = datenDs();
    l.AddNew();
    l.set("Counter", Value(RecordId(nextPersonLink_++)));
    l.set("Quelle", Value(RecordId(a.id)));
    l.set("Ziel", Value(RecordId(b.id)));
    l.set("Art", Value("E"));
    l.set("ASSO", Value(""));
    l.set("Info", Value(""));
    l.Update();
    ++counts_.personLinks;
}

Counts Writer::run(std::int64_t persons) {
    places(std::max<std::int64_t>(static_cast<std::int64_t>(Regions.size()) + 10,
                                  persons / 200 + static_cast<std::int64_t>(Regions.size())));
    records(persons);
    // Couples, handled generation by generation: each has children, and most children marry
    // someone who comes into the tree from outside.
    std::deque<std::pair<std::int64_t, std::int64_t>> couples;
    auto newCouple = [&](int bornAround) {
        const std::int64_t husband = person(true, random_.pick(Surnames), bornAround, 0, 0);
        const std::int64_t wife = person(false, random_.pick(Surnames), bornAround + 2, 0, 0);
        marriage(people_[static_cast<std::size_t>(husband - 1)],
                 people_[static_cast<std::size_t>(wife - 1)]);
        couples.emplace_back(husband, wife);
    };
    // Founders in enough families that the generations span the last centuries and end
    // around today.
    const std::int64_t founders = std::max<std::int64_t>(1, persons / 1500);
    for (std::int64_t i = 0; i < founders && counts_.persons < persons; ++i)
        newCouple(1600 + static_cast<int>(random_.below(150)));
    while (counts_.persons < persons) {
        if (couples.empty()) {
            newCouple(1600 + static_cast<int>(random_.below(150)));
            continue;
        }
        const auto [father, mother] = couples.front();
        couples.pop_front();
        const int children = static_cast<int>(random_.below(6));
        for (int c = 0; c < children && counts_.persons < persons; ++c) {
            const Person& f = people_[static_cast<std::size_t>(father - 1)];
            const int born = f.birth.year + 22 + static_cast<int>(random_.below(20));
            if (born > 2015)
                break; // the branch has reached today
            const bool male = random_.chance(50);
            const std::int64_t child = person(male, f.surname, born, father, mother);
            if (counts_.persons < persons && random_.chance(75) && born < 1995) {
                const Person& k = people_[static_cast<std::size_t>(child - 1)];
                const std::int64_t spouse =
                    person(!male, random_.pick(Surnames),
                           k.birth.year - 3 + static_cast<int>(random_.below(7)), 0, 0);
                const Person& s = people_[static_cast<std::size_t>(spouse - 1)];
                const Person& husband = male ? people_[static_cast<std::size_t>(child - 1)] : s;
                const Person& wife = male ? s : people_[static_cast<std::size_t>(child - 1)];
                marriage(husband, wife);
                couples.emplace_back(husband.id, wife.id);
            }
        }
    }
    return counts_;
}

// The event types of the file: the rows of the catalogue's table "Deutsch".
void copyEventTypes(dao::Database& db, const std::string& catalogue) {
    if (catalogue.empty())
        return;
    auto source = dao::OpenDatabase(catalogue, false, true);
    auto from = source->OpenRecordset("Deutsch");
    auto to = db.OpenRecordset("Ereignisdb");
    for (; !from->Eof(); from->MoveNext()) {
        to->AddNew();
        for (const dao::FieldDef& f : to->Fields())
            if (from->hasField(f.Name))
                to->set(f.Name, from->get(f.Name));
        to->Update();
    }
}

} // namespace

Counts generateTree(const Options& options, const std::string& path) {
    const fs::path target(path);
    const fs::path work = fs::path(path + ".template");
    fs::create_directories(work);
    schema::buildTemplate(work);
    FileBeside file(target);
    fs::copy_file(work / schema::TemplateFile, file.path(), fs::copy_options::overwrite_existing);
    fs::remove_all(work);
    Counts counts;
    {
        auto db = dao::OpenDatabase(file.path().string());
        dao::Transaction t(*db);
        copyEventTypes(*db, options.catalogue);
        Writer writer(*db, options);
        counts = writer.run(options.persons);
        t.commit();
    }
    file.putInPlace();
    return counts;
}

} // namespace folio::generator
