#include <gtest/gtest.h>

#include "backup/BackupRun.h"
#include "backup/FrmFileTransfer.h"
#include "shell/ModuloPrincipale.h"
#include "storage/Unita.h"

namespace tandemize {
namespace {

using test::addTransfer;
using test::BackupFolder;

// A long list of transfers, on which the checks before the first copy take a while.
class LongList : public BackupFolder {
 public:
  explicit LongList(int records) {
    work().makeFolder("from");
    work().makeFolder("to");
    ArrayTrasferimento.Svuota();
    ArrayScansione.Azzera(0);
    addTransfer(program("from/a"), program("to/a"), 1e15);
    for (int i = 1; i < records; ++i) ArrayTrasferimento.Aggiungi(RecordOperazione(ArrayTrasferimento[0]));
  }
  ~LongList() { screen.onEvents = nullptr; }
  FrmFileTransfer window;
};

// How often events run while a list is checked.
long eventsForSpace(int records) {
  LongList t(records);
  const long before = t.screen.events;
  EXPECT_FALSE(t.window.ControllaSpazio());
  return t.screen.events - before;
}

long eventsForDestinations(int records) {
  LongList t(records);
  std::vector<RigaPercorso> roots;
  const long before = t.screen.events;
  EXPECT_EQ(t.window.ControllaDestinazioni(roots), 0);
  EXPECT_EQ(roots.size(), 1U);
  return t.screen.events - before;
}

TEST(ControllaSpazio, Events_run_each_1024_records) {
  for (const int records : {1023, 1024, 5000})
    EXPECT_EQ(eventsForSpace(records) - eventsForSpace(1), records / 1024) << records;
}

TEST(ControllaDestinazioni, Events_run_each_1024_records) {
  for (const int records : {1023, 1024, 5000})
    EXPECT_EQ(eventsForDestinations(records) - eventsForDestinations(1), records / 1024) << records;
}

TEST(ControllaSpazio, A_stop_meanwhile_ends_it_without_a_word_about_room) {
  LongList t(5000);
  t.screen.onEvents = [&] { t.window.ProcessoAnnullato = true; };
  const long before = t.screen.events;
  EXPECT_FALSE(t.window.ControllaSpazio());
  EXPECT_EQ(t.screen.events - before, 1);
  EXPECT_TRUE(t.screen.boxes.empty());
}

TEST(ControllaDestinazioni, A_stop_meanwhile_ends_it) {
  LongList t(5000);
  std::vector<RigaPercorso> roots;
  t.screen.onEvents = [&] { t.window.ProcessoAnnullato = true; };
  const long before = t.screen.events;
  EXPECT_EQ(t.window.ControllaDestinazioni(roots), 0);
  EXPECT_EQ(t.screen.events - before, 1);
  EXPECT_TRUE(roots.empty());
}

TEST(FrmFileTransfer, A_stop_while_the_list_is_checked_ends_the_run_before_it_copies) {
  LongList t(5000);
  t.screen.onEvents = [&] { AnnullaOperazioneInCorso(); };
  EXPECT_FALSE(t.window.Init(0, false, false));
  EXPECT_EQ(t.window.EsitoCopia, EsitoTrasferimento::Annullato);
  EXPECT_FALSE(t.work().exists("to/a"));
  for (const std::string& box : test::boxTexts(t.screen))
    EXPECT_EQ(box.find(Messaggio(176)), std::string::npos) << box;
}

}  // namespace
}  // namespace tandemize
