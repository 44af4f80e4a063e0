#include "CorvaneApp/Views/RowListModel.h"

#include <QMetaProperty>

namespace corvane {

QHash<int, QByteArray> RowListModel::roleNames() const {
    QHash<int, QByteArray> names;
    for (int i = 0; i < m_row.propertyCount(); ++i)
        names.insert(Qt::UserRole + i, m_row.property(i).name());
    return names;
}

QVariant RowListModel::data(const QModelIndex& index, int role) const {
    const int property = role - Qt::UserRole;
    if (!index.isValid() || index.row() >= count() || property < 0 || property >= m_row.propertyCount())
        return {};
    return m_row.property(property).readOnGadget(rowAt(index.row()));
}

} // namespace corvane
