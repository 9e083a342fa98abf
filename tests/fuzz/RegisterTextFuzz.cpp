// SPDX-License-Identifier: MIT
// Fuzzes the register dialog: any text in its fields, compared with strtoul().
#include "dialogs/AccessRegister.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/Widgets.h"
#include "tests/support/ByteTape.h"

#include <QLineEdit>

#include <cstdlib>
#include <string>

namespace {

struct Bench {
    OCameraHandle camera = fuzz::openCamera();
    AccessRegister dialog{nullptr, camera};
    QLineEdit *address = dialog.findChild<QLineEdit *>("edAddr");
    QLineEdit *data = dialog.findChild<QLineEdit *>("edData");
};

/// Eight characters cannot overflow, so both parsers must agree.
std::uint32_t numberIn(const QLineEdit &field)
{
    return static_cast<std::uint32_t>(
        std::strtoul(field.text().toLatin1().constData(), nullptr, 16));
}

void read(Bench &bench, std::uint32_t value)
{
    const std::uint32_t address = numberIn(*bench.address);
    fakeorvalis::withState([=](fakeorvalis::State &state) {
        state.registers = {{address, value}};
    });
    bench.dialog.on_btnRead_clicked();
    FUZZ_CHECK(fakeorvalis::calls() ==
               std::vector{"OrvalisReadRegister(h1, " + std::to_string(address) + ")"});
    const std::uint32_t shown = address % 4 == 0 ? value : 0;
    FUZZ_CHECK(bench.data->text() == QString("%1").arg(shown, 8, 16, QChar('0')).toUpper());
}

void write(Bench &bench)
{
    const std::string numbers =
        std::to_string(numberIn(*bench.address)) + ", " + std::to_string(numberIn(*bench.data));
    bench.dialog.on_btnWrite_clicked();
    FUZZ_CHECK(fakeorvalis::calls() == std::vector{"OrvalisWriteRegiser(h1, " + numbers + ")"});
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static auto &bench = *new Bench;
    viewertest::ByteTape tape(data, size);
    const bool reads = tape.below(2) == 0;
    const auto value = tape.number<std::uint32_t>();
    bench.address->setText(QString::fromStdString(tape.text(20)));
    bench.data->setText(QString::fromStdString(tape.text(20)));
    FUZZ_CHECK(bench.address->text().size() <= 8 && bench.data->text().size() <= 8);
    fakeorvalis::clearCalls();
    reads ? read(bench, value) : write(bench);
    return 0;
}
