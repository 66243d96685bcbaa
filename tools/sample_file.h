// The rows of the sample tree as the program stores them: empty texts as one blank where a
// field doesn't take the empty text, rich text, date groups with their display text and sort
// key, marks, references as record numbers. Used by folio-build-sample.
#pragma once

#include "sample_source.h"

#include "engine/date_time.h"
#include "engine/engine.h"
#include "engine/recordset.h"

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace folio::sample_source {

// The sort key of a partial date: year, month and day as eight digits, six without a day,
// four without a month, empty without a year.
std::string sortKey(const Date& date);

class SampleFile {
public:
    SampleFile(const Sample& sample, dao::Database& db);

    const Sample& sample() const { return s_; }
    dao::Database& db() { return db_; }
    // A table cursor on a table of the file, opened once.
    dao::Recordset& table(std::string_view name);
    // Adds a row with every field at its empty value; the caller sets the rest and updates.
    dao::Recordset& newRow(std::string_view name);

    // The author and the note of the file, in the one row of `Version`.
    void addVersion();
    // One row for a record of the source, of the table of its kind. A picture takes the folder
    // of its files and the size of its file; an event adds its participants (Ereignis_DS).
    void addRecord(const Record& record);
    void addPicture(const Record& record, const std::filesystem::path& folder, long long size);

private:
    void addPerson(const Record& r);
    void addEvent(const Record& r);
    void addParticipant(const Record& event, const Record& person, const std::string& letter,
                        const std::string& asso);

    DateTime stamp(const Record& record, std::string_view key) const;
    void setDate(dao::Recordset& rs, const Record& record, std::string_view key,
                 const std::string& prefix, const char* ca, const char* noQualifier);
    void setMarks(dao::Recordset& rs, const Record& record);
    void setRef(dao::Recordset& rs, const Record& record, std::string_view field,
                std::string_view key);

    const Sample& s_;
    dao::Database& db_;
    std::map<std::string, std::unique_ptr<dao::Recordset>> tables_;
    DateTime defaultStamp_;
    long long participants_ = 0;
};

} // namespace folio::sample_source
