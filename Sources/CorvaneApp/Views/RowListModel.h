// Values as rows of a list that the view draws lazily: each property of the value is a role of the same name. Taking
// new values changes only the rows that differ, so that what the user holds open, typed or scrolled to stays. Main
// thread.
#pragma once

#include <QAbstractListModel>
#include <QHash>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace corvane {

class RowListModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    [[nodiscard]] int count() const { return rowCount({}); }
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

Q_SIGNALS:
    void countChanged();

protected:
    RowListModel(const QMetaObject& row, QObject* parent) : QAbstractListModel(parent), m_row(row) {}

    [[nodiscard]] virtual const void* rowAt(int index) const = 0;

private:
    const QMetaObject& m_row;
};

// `Row` is a value with Q_GADGET; `key` tells which row is which, and no two rows have the same.
template<typename Row>
class ValueListModel final : public RowListModel {
public:
    using Key = QString (*)(const Row&);

    explicit ValueListModel(Key key, QObject* parent = nullptr)
        : RowListModel(Row::staticMetaObject, parent), m_key(key) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    [[nodiscard]] const std::vector<Row>& rows() const { return m_rows; }

    void update(std::vector<Row> rows) {
        const auto before = m_rows.size();
        QHash<QString, int> places;
        for (const Row& row : rows)
            places.insert(m_key(row), static_cast<int>(places.size()));
        removeMissing(places);
        for (std::size_t i = 0; i < rows.size(); ++i)
            put(std::move(rows[i]), i, places);
        if (m_rows.size() != before)
            Q_EMIT countChanged();
    }
    // For rows that have little to do with the present ones: the view begins anew.
    void replace(std::vector<Row> rows) {
        const auto before = m_rows.size();
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
        if (m_rows.size() != before)
            Q_EMIT countChanged();
    }

protected:
    [[nodiscard]] const void* rowAt(int index) const override { return &m_rows[static_cast<std::size_t>(index)]; }

private:
    using Position = typename std::vector<Row>::iterator;

    void removeMissing(const QHash<QString, int>& places) {
        for (int i = count() - 1; i >= 0; --i) {
            const auto at = m_rows.begin() + i;
            if (places.contains(m_key(*at)))
                continue;
            beginRemoveRows({}, i, i);
            m_rows.erase(at);
            endRemoveRows();
        }
    }

    void put(Row row, std::size_t index, const QHash<QString, int>& places) {
        const auto target = m_rows.begin() + static_cast<std::ptrdiff_t>(index);
        const auto found =
            std::find_if(target, m_rows.end(), [&, key = m_key(row)](const Row& one) { return m_key(one) == key; });
        const int at = static_cast<int>(index);
        if (found == m_rows.end()) {
            beginInsertRows({}, at, at);
            m_rows.insert(target, std::move(row));
            endInsertRows();
            return;
        }
        if (found != target)
            makeRoom(target, found, places);
        Row& present = m_rows[index];
        if (present == row)
            return;
        present = std::move(row);
        Q_EMIT dataChanged(QAbstractListModel::index(at), QAbstractListModel::index(at));
    }

    // One row that goes far down would otherwise be passed by every row below it, one move for each.
    void makeRoom(Position target, Position found, const QHash<QString, int>& places) {
        const auto placeOf = [this](Position row) { return static_cast<int>(std::distance(m_rows.begin(), row)); };
        const int last = std::min(places.value(m_key(*target)), count() - 1);
        if (found == std::next(target) && last > placeOf(found)) {
            beginMoveRows({}, placeOf(target), placeOf(target), {}, last + 1);
            std::rotate(target, found, m_rows.begin() + last + 1);
        } else {
            beginMoveRows({}, placeOf(found), placeOf(found), {}, placeOf(target));
            std::rotate(target, found, std::next(found));
        }
        endMoveRows();
    }

    Key m_key;
    std::vector<Row> m_rows;
};

} // namespace corvane
