#include "CorvaneWorker/Voice/KaldiFiles.h"

#include <QByteArray>
#include <QList>

#include <cstdint>
#include <cstring>
#include <string_view>

namespace corvane {

namespace {

constexpr std::int32_t largestSide = 1 << 16; // no honest layer is as wide

[[noreturn]] void failReading() {
    throw ModelError(QStringLiteral("the network's file is cut short or damaged"));
}

// Walks over tokens ("<Name> "), and values that tell their own kind by their first byte.
class Reader {
public:
    explicit Reader(QByteArrayView bytes) : m_rest(bytes.data(), static_cast<std::size_t>(bytes.size())) {}

    std::string_view take(std::size_t count) {
        if (count > m_rest.size())
            failReading();
        const auto taken = m_rest.substr(0, count);
        m_rest.remove_prefix(count);
        return taken;
    }

    // Up to the separator, which is dropped.
    std::string_view takeUntil(char separator) {
        const std::size_t length = m_rest.find(separator);
        if (length == std::string_view::npos)
            failReading();
        const auto taken = take(length);
        take(1);
        return taken;
    }

    void expect(std::string_view text) {
        if (take(text.size()) != text)
            failReading();
    }

    [[nodiscard]] bool startsWith(std::string_view text) const { return m_rest.starts_with(text); }

    // A scalar of the type with its size in front.
    template<typename Value>
    Value scalar() {
        if (take(1).front() != static_cast<char>(sizeof(Value)))
            failReading();
        Value value;
        std::memcpy(&value, take(sizeof(Value)).data(), sizeof(Value));
        return value;
    }

    // "FM " has rows and columns, "FV " a length.
    Eigen::MatrixXf matrix() {
        const bool isVector = take(3)[1] == 'V';
        const auto rows = scalar<std::int32_t>();
        const auto columns = isVector ? 1 : scalar<std::int32_t>();
        if (rows < 0 || columns < 0 || rows > largestSide || columns > largestSide)
            failReading();
        const auto bytes = take(sizeof(float) * static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns));
        Eigen::Matrix<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor> values(rows, columns);
        if (!bytes.empty())
            std::memcpy(values.data(), bytes.data(), bytes.size());
        if (!values.allFinite())
            failReading();
        return values;
    }

private:
    std::string_view m_rest;
};

void readValue(Reader& reader, KaldiComponent& component, const std::string& name) {
    if (reader.startsWith("FM ") || reader.startsWith("FV "))
        component.matrices[name] = reader.matrix();
    else if (reader.startsWith("\4"))
        component.numbers[name] = reader.scalar<float>();
    else if (reader.startsWith("\10"))
        (void)reader.scalar<double>();
    else if (reader.startsWith("T") || reader.startsWith("F"))
        reader.take(1);
    else
        failReading();
}

KaldiComponent readComponent(Reader& reader) {
    KaldiComponent component;
    reader.expect("<");
    component.type = reader.takeUntil('>');
    reader.expect(" ");
    while (!reader.startsWith("</")) {
        reader.expect("<");
        const std::string name(reader.takeUntil('>'));
        reader.expect(" ");
        readValue(reader, component, name);
    }
    reader.expect("</" + component.type + "> ");
    return component;
}

// "component-node name=a component=b input=c": the value behind `key`, which for the last one reaches to the end.
std::string valueIn(const QByteArray& line, const char* key) {
    const QByteArray wanted = QByteArray(" ") + key + "=";
    const qsizetype begin = line.indexOf(wanted);
    if (begin < 0)
        return {};
    const QByteArray value = line.mid(begin + wanted.size());
    return (wanted == " input=" ? value : value.left(value.indexOf(' '))).toStdString();
}

} // namespace

KaldiNetwork parseKaldiNetwork(QByteArrayView bytes) {
    Reader reader(bytes);
    reader.expect(std::string_view("\0B<Nnet3> \n", 11));
    KaldiNetwork network;
    for (auto line = reader.takeUntil('\n'); !line.empty(); line = reader.takeUntil('\n')) {
        const QByteArray text(line.data(), static_cast<qsizetype>(line.size()));
        network.nodes.push_back({valueIn(text, "name"), valueIn(text, "component"), valueIn(text, "input")});
    }
    reader.expect("<NumComponents> ");
    const auto count = reader.scalar<std::int32_t>();
    for (std::int32_t index = 0; index < count; ++index) {
        reader.expect("<ComponentName> ");
        const std::string name(reader.takeUntil(' '));
        network.components[name] = readComponent(reader);
    }
    return network;
}

Eigen::VectorXf parseKaldiVector(QByteArrayView text) {
    const QList<QByteArray> parts = text.toByteArray().simplified().split(' ');
    if (parts.size() < 3 || parts.front() != "[" || parts.back() != "]")
        throw ModelError(QStringLiteral("a vector of the model is cut short or damaged"));
    Eigen::VectorXf vector(parts.size() - 2);
    for (qsizetype index = 1; index + 1 < parts.size(); ++index) {
        bool isNumber = false;
        vector[index - 1] = parts[index].toFloat(&isNumber);
        if (!isNumber)
            throw ModelError(QStringLiteral("a vector of the model is cut short or damaged"));
    }
    return vector;
}

} // namespace corvane
