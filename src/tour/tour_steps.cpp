#include "tour/tour_steps.h"

#include <cstddef>

namespace vel {
namespace {

TourTarget control(std::string_view name) { return {TourTargetKind::control, name}; }
TourTarget columnTitle(int column) { return {TourTargetKind::columnTitle, "xLView1", column}; }
TourTarget listRows() { return {TourTargetKind::listRows, "xLView1"}; }
TourTarget wholeWindow() { return {TourTargetKind::window}; }

using Steps = std::array<TourStep, kLastTourStep>;

const Steps& steps() {
  // The English texts are shown to the letter, as the program's users have
  // always known them, slips included.
  static const Steps table = {{
      {TourPlace::offsets,
       3705,
       90,
       false,
       {true, false, false, false},
       "Select a log by date. The most updated log will be shown initially.",
       {"　日付を選んでログを開きます。", "　最初は最も新しいログが表示されます。"},
       {control("Combo1")}},
      {TourPlace::offsets,
       5805,
       120,
       false,
       {true, false, false, false},
       "Press this key to show the most updated list. Enables to select even newer list if any.It "
       "is always required to manually operate this key for updating the list anyway.",
       {"　このキーを押すと、最も新しい一覧を表示します。さらに新しいログがあれば、それも選べるよう"
        "になります。",
        "　一覧を更新するには、いつもこのキーを押す必要があります。"},
       {control("Command5")}},
      {TourPlace::offsets,
       1830,
       1080,
       false,
       {true, false, false, false},
       "Click the title bar of each column to sort the data. Drug the space line to change the "
       "width of columns.",
       {"　各列のタイトルをクリックすると、データを並べ替えます。",
        "　列の境界線をドラッグすると、列の幅を変えられます。"},
       {columnTitle(1)}},
      {TourPlace::offsets,
       2370,
       1080,
       false,
       {true, false, false, false},
       "Click PIC to sort O=available X=unavailable.",
       {"　PIC をクリックすると、写真の有無で並べ替えます。", "　O＝あり、X＝なし"},
       {columnTitle(2)}},
      {TourPlace::offsets,
       5550,
       1090,
       false,
       {true, false, false, false},
       "Click DEPT/DEST to sort the data by airport codes.",
       {"　DEPT/DEST をクリックすると、", "　データを空港コードの順に並べ替えます。"},
       {columnTitle(4), columnTitle(5)}},
      {TourPlace::offsets,
       870,
       1090,
       false,
       {false, true, false, false},
       "Click Equipment to sort by the type of equipment.",
       {"　Equipment をクリックすると、", "　データを機種の順に並べ替えます。"},
       {columnTitle(6)}},
      {TourPlace::offsets,
       3150,
       1845,
       false,
       {true, false, false, false},
       "Click on the line you wish to edit. All available data will be displayed on the relative "
       "editor below the list and ready for editing. Be advised that the list you are seeing "
       "refers to the log, not the actual current status. Please allow a few second to show all "
       "the data on the editors.",
       {"　編集したい行をクリックしてください。利用できるデータがすべて、一覧の下のそれぞれの編集欄"
        "に表示され、編集できるようになります。",
        "　一覧に表示されているのはログの内容で、現在の実際の状況ではありません。ご注意ください。",
        "　編集欄にすべてのデータが表示されるまで、数秒お待ちください。"},
       {listRows()}},
      {TourPlace::offsets,
       510,
       3075,
       true,
       {false, false, true, false},
       "This is to edit the images and registration numbers of the equipment. Click on the image "
       "to open the image editing software. Be sure to have noimage.jpg sumbnail in the PICS "
       "folder to correctly function this editor.",
       {"　機体の写真と登録記号を編集します。写真をクリックすると、画像編集ソフトが開きます。",
        "　正しく動作させるため、サムネイル画像 noimage.jpg を必ず PICS "
        "フォルダーに置いてください。"},
       {control("Image1")}},
      {TourPlace::offsets,
       1965,
       2760,
       true,
       {false, false, true, false},
       "Click Search key to link to the photo service and search for the equipment automatically. "
       "A small manual adjustment such as B1234/B-1234 or VNA123/V-NA123 may be needed to obtain "
       "the right images. All images belong to their owners. Please respect their rights.",
       {"　Search キーを押すと写真サービスに接続し、機体を自動的に検索します。",
        "　目的の写真を見つけるには、B1234/B-1234 や VNA123/V-NA123 "
        "のような少しの手直しが必要なことがあります。",
        "　写真の権利はそれぞれの権利者にあります。権利を尊重してください。"},
       {control("Command7(0)")}},
      {TourPlace::offsets,
       1320,
       570,
       true,
       {false, false, true, false},
       "Shows the current data described in the AIRCRAFT.CSV file. Use this space to write or "
       "modify the type of equipment and click [Ent] to update it.",
       {"　AIRCRAFT.CSV に現在登録されている内容を表示します。",
        "　ここに機種を入力または修正し、[Ent] を押すと更新されます。"},
       {control("Text1")}},
      {TourPlace::offsets,
       3450,
       3120,
       true,
       {false, false, true, false},
       "Shows the current data described in the FLIGHT.CSV file.",
       {"　FLIGHT.CSV に現在登録されている", "　内容を表示します。"},
       {control("Frame2")}},
      {TourPlace::offsets,
       3840,
       1560,
       true,
       {false, false, true, false},
       "Use this space to write or modify the airport code of departure and click [Ent] to update "
       "it. Use code search on the right by entering key words such as 3-letter airport code or a "
       "name of place.",
       {"　ここに出発空港のコードを入力または修正し、[Ent] を押すと更新されます。",
        "　コードは、3文字の空港コードや地名などのキーワードを入力して、右側のコード検索で調べられ"
        "ます。"},
       {control("Text2(0)")}},
      {TourPlace::offsets,
       3810,
       1065,
       true,
       {false, false, true, false},
       "Use this space to write or modify the airport code of destination and click [Ent] to "
       "update it. Use code search on the right by entering key words such as 3-letter airport "
       "code or a name of place.",
       {"　ここに到着空港のコードを入力または修正し、[Ent] を押すと更新されます。",
        "　コードは、3文字の空港コードや地名などのキーワードを入力して、右側のコード検索で調べられ"
        "ます。"},
       {control("Text2(1)")}},
      {TourPlace::offsets,
       7215,
       2850,
       true,
       {false, false, true, false},
       "Enter key words such as 3-letter airport code or a name of place here to see the "
       "candidates below.",
       {"　3文字の空港コードや地名などのキーワードを入力すると、", "　下に候補が表示されます。"},
       {control("Text3")}},
      {TourPlace::offsets,
       7110,
       2460,
       true,
       {false, false, true, false},
       "Select appropreate airport name and click [<] key.",
       {"　該当する空港名を選び、", "　[<] キーを押してください。"},
       {control("List1")}},
      {TourPlace::offsets,
       6510,
       1515,
       true,
       {false, false, true, false},
       "Press this key to transfer the data to DEPT/DEST box on the left.",
       {"　このキーを押すと、選んだデータを", "　左の DEPT/DEST 欄に転記します。"},
       {control("Command3(0)"), control("Command3(1)")}},
      {TourPlace::offsets,
       6255,
       645,
       true,
       {false, false, true, false},
       "Press [Ent] to write the edited data to FLIGHT.CSV file.",
       {"　[Ent] を押すと、編集したデータを", "　FLIGHT.CSV ファイルに書き込みます。"},
       {control("Command2")}},
      {TourPlace::offsets,
       3930,
       2745,
       true,
       {false, false, true, false},
       "Select Search engine.",
       {"　便の検索に使う", "　検索エンジンを選びます。"},
       {control("Combo3")}},
      {TourPlace::offsets,
       5055,
       2745,
       true,
       {false, false, true, false},
       "Press Search key to search for the flight details on the flight status service's site. All "
       "information there belongs to its owners. Please respect their rights.",
       {"　Search キーを押すと、運航情報サービスのサイトで便の詳細を検索します。",
        "　情報の権利はそれぞれの権利者にあります。権利を尊重してください。"},
       {control("Command7(1)")}},
      {TourPlace::offsets,
       4635,
       2460,
       true,
       {false, false, false, true},
       "This indicates the search result of LETTER.CSV for the airline codes refering the first 2 "
       "letters of flight received by QZ-ACARS. Edit it here if necessary.",
       {"　QZ-ACARS が受信した便名の先頭2文字をもとに、LETTER.CSV "
        "から航空会社コードを検索した結果です。",
        "　必要に応じて、ここで編集してください。"},
       {control("Frame3")}},
      {TourPlace::offsets,
       4635,
       2085,
       true,
       {false, false, false, true},
       "Edit it here with 2 or 3 letter codes and airline's name. You may need to manually edit "
       "LETTER.CSV to meet correct functions of QZ-ACARS, as not all airlines operate ACARS with "
       "their designated ICAO/IATA codes.",
       {"　2文字または3文字のコードと航空会社名を、ここで編集します。",
        "　すべての航空会社が所定の ICAO/IATA コードで ACARS を運用しているわけではありません。",
        "　QZ-ACARS を正しく動作させるため、LETTER.CSV "
        "を手作業で編集する必要がある場合があります。"},
       {control("Text2(3)"), control("Text2(4)")}},
      {TourPlace::rightOfWindow,
       100,
       15,
       true,
       {false, true, true, false},
       "You may change the size of the window or show full-size. It automatically fits the size of "
       "the list accordingly to the size of the window.",
       {"　ウィンドウの大きさは変えられます。全画面表示もできます。",
        "　一覧の大きさは、ウィンドウに合わせて自動的に変わります。"},
       {wholeWindow()}},
      {TourPlace::offsets,
       1830,
       660,
       false,
       {true, false, false, false},
       "The Flight-number filled in is retrieved.",
       {"　ここに便名を入力すると、", "　その便名のデータを検索します。"},
       {control("Text4(0)")}},
      {TourPlace::offsets,
       5445,
       690,
       false,
       {true, false, false, false},
       "The DEPT/DEST filled in is retrieved.",
       {"　ここに DEPT/DEST を入力すると、", "　出発地または目的地が一致するデータを検索します。"},
       {control("Text4(2)")}},
      {TourPlace::offsets,
       4335,
       660,
       false,
       {false, true, false, false},
       "Time filled in is retrieved.",
       {"　ここに時刻を入力すると、", "　その時刻のデータを検索します。"},
       {control("Text4(6)")}},
      {TourPlace::offsets,
       6285,
       660,
       false,
       {false, true, false, false},
       "Clear all filter.",
       {"　すべての検索条件を", "　消去します。"},
       {control("Command9")}},
      {TourPlace::offsets,
       5565,
       630,
       false,
       {false, true, false, false},
       "The retrieval result is displayed.",
       {"　検索の結果が", "　表示されます。"},
       {control("Label3")}},
      {TourPlace::offsets,
       4620,
       1380,
       true,
       {false, false, false, true},
       "Edit it here with 4 letter codes and airport's name. Click [Ent] to update it.",
       {"　4文字のコードと空港名を、ここで編集します。", "　[Ent] をクリックすると更新されます。"},
       {control("Text2(5)"), control("Text2(6)")}},
      {TourPlace::centred,
       0,
       0,
       false,
       {false, false, false, false},
       "Many thanks to everyone who tests this program, reports what goes wrong and shares logs.",
       {"　このプログラムを試してくださる方、不具合を知らせてくださる方、",
        "　ログを提供してくださる方、すべての皆様に心より感謝いたします。"},
       {}},
  }};
  return table;
}

}  // namespace

const TourStep* tourStep(int number) {
  if (number < kFirstTourStep || number > kLastTourStep) return nullptr;
  return &steps()[static_cast<std::size_t>(number - kFirstTourStep)];
}

std::string shownText(int number) {
  const TourStep* step = tourStep(number);
  if (step == nullptr) return {};
  std::string text(step->english);
  text += "\r\n\r\n";
  bool first = true;
  for (const std::string_view line : step->japanese) {
    if (!first) text += "\r\n";
    text += line;
    first = false;
  }
  return text;
}

}  // namespace vel
