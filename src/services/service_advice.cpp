#include "services/service_advice.h"

#include "win/system_text.h"

#include <algorithm>
#include <iterator>

namespace services {
namespace {

constexpr std::wstring_view kUnknownService = L"判断基準：情報募集中です。作者HPにてご報告していただくと反映いたします";

// "tpm base sevices" is misspelled and so never met; its service is left to the users' reports.
// clang-format off
constexpr ServiceAdvice kAdvice[] = {
    {L"activex installer (axinstsv)", L"判断基準：管理者権限以外でもActive Xをインストール可にする。個人ユーザーなら「手動」か「無効」"},
    {L"adaptive brightness", L"判断基準：モニタの明るさ自動調節が不要の場合、使用モニタが環境光センサーに対応していない場合は「無効」"},
    {L"apple mobile device", L"判断基準：iPhone、iPad、iPodをWindowsのiTunesで認識させるのに必要、不要なら「無効」"},
    {L"alerter", L"判断基準：システム管理者が複数台のパソコンを一括管理するのに用いる。個人ユーザーなら「無効」"},
    {L"application layer gateway service", L"判断基準：インターネット接続の共有、Windowsファイアウォール機能を使わないなら「無効」"},
    {L"application management", L"判断基準：社内ネットワークなどを利用する際には必須。個人ユーザーなら「無効」"},
    {L"automatic updates", L"判断基準：Windows Updateを自動で行ってほしくないなら「無効」"},
    {L"background intelligent transfer service", L"判断基準：「自動」か「手動」推奨。Windows Updateに必要"},
    {L"certificate propagation", L"判断基準：スマート カードを使わないなら「無効」"},
    {L"clipbook", L"判断基準：リモートアシスタントなどの機能を利用しないなら「無効」"},
    {L"computer browser", L"判断基準：通常の共有とは違い、停止してもLAN共有接続には問題ないので「無効」"},
    {L"com+ event system", L"判断基準：COMコンポーネントにイベントを自動的に通知。「手動」にしても問題無しと考えられます"},
    {L"cryptographic services", L"判断基準：「自動」か「手動」推奨。Windows Updateに必要"},
    {L"dcom server process launcher", L"判断基準：「自動」推奨。COM+のネットワーク対応版"},
    {L"desktop window manager session manager", L"判断基準：「自動」推奨。停止させるとクラシック表示になる"},
    {L"dhcp client", L"判断基準：パソコンに固定IPアドレスを割り当ててる場合は「無効」 DHCPサーバーよりIPアドレスを貰う場合は「自動」"},
    {L"distributed link tracking client", L"判断基準：ドメインに参加、かつNTFSを使用しているなら必須。個人ユーザーなら「手動」にしても問題無しと考えられます"},
    {L"distributed transaction coordinator", L"判断基準：個人ユーザーなら「手動」にしても問題無しと考えられます"},
    {L"dns client", L"判断基準：通常は「自動」"},
    {L"error reporting service", L"判断基準：マイクロソフト社へエラー報告しないなら「無効」"},
    {L"event log", L"判断基準：あまりお世話になることはないと思いますが、もしものエラー時の手助けのため「自動」"},
    {L"fast user switching compatibility", L"判断基準：ユーザーの切り替えを高速に行うためのサービス。シングルユーザーなら「無効」"},
    {L"fax", L"判断基準：パソコンで FAX の送受信を行わないなら「無効」"},
    {L"function discovery provider host", L"判断基準：LAN共有してないなら「無効」"},
    {L"function discovery resource publication", L"判断基準：LAN共有してないなら「無効」"},
    {L"help and support", L"判断基準：リモートアシスタンスを利用しないなら「無効」"},
    {L"parental controls", L"判断基準：保護者による制限機能など不要なら「無効」"},
    {L"print spooler", L"判断基準：プリンタ未使用なら「無効」"},
    {L"readyboost", L"判断基準：フラッシュメモリを使用した高速化技術が不要なら「無効」"},
    {L"remote access auto connection manager", L"判断基準：リモート ネットワークへの接続を行わないなら「無効」"},
    {L"remote access connection manager", L"判断基準：インターネット接続にダイヤルアップを利用していないなら「無効」"},
    {L"remote registry", L"判断基準：他のパソコンからレジストリ操作を行わないなら「無効」"},
    {L"seaport", L"判断基準：マイクロソフトの検索強化機能。検索履歴などの機能が不要なら「無効」"},
    {L"server", L"判断基準：「自動」推奨。ファイルやプリンタの共有を行なうのなら必須"},
    {L"shell hardware detection", L"判断基準：ドライブ、デバイス等の自動検出、CD/DVDの自動再生が必要ないなら「無効」"},
    {L"smart card", L"判断基準：スマート カードを使わないなら「無効」"},
    {L"smart card removal policy", L"判断基準：スマート カードを使わないなら「無効」"},
    {L"tablet pc input service", L"判断基準：Tablet PCを使用してないなら「無効」"},
    {L"tcp/ip netbios helper", L"判断基準：LMHOSTSの参照を有効にしているなら「自動」、NetBiosを使ってないなら「無効」"},
    {L"terminal services", L"判断基準：リモート デスクトップ、ターミナル サーバーを使わないなら「無効」"},
    {L"tpm base sevices", L"判断基準：指紋認証（暗号化）等の機能を持たないPCなら「無効」"},
    {L"txvdrv service", L"判断基準：ジャストシステム社のFeliCa、おサイフケータイを利用した「パーソナルシェルター」機能を使わないなら「無効」"},
    {L"webclient", L"判断基準：「このフォルダを Web に公開する」機能を使わないなら「無効」"},
    {L"windows audio", L"判断基準：基本は「自動」。音が全く出なくてもよいなら「無効」"},
    {L"windows cardspace", L"判断基準：Windows Live IDサービスでサポートされているらしい。基本は使わないようなので「無効」"},
    {L"windows defender", L"判断基準：他のスパイウェア監視ソフトを使用しているなら「無効」"},
    {L"windows driver foundation - user-mode driver framework", L"判断基準：変更しないことを推奨"},
    {L"windows error reporting service", L"判断基準：マイクロソフト社へエラー報告しないなら「無効」"},
    {L"windows event log", L"判断基準：あまりお世話になることはないと思いますが、もしものエラー時の手助けのため「自動」"},
    {L"windows image acquisition (wia)", L"判断基準：デジタルカメラやスキャナから画像情報を簡単に取り込めるようにするサービス。不要なら「無効」、環境によっては不具合が出た方がいるようなので注意。私は「手動」にしています"},
    {L"windows management instrumentation", L"判断基準：「自動」推奨"},
    {L"windows media center extender service", L"判断基準：メディアセンター機能が未使用なら「無効」"},
    {L"windows media center receiver service", L"判断基準：メディアセンター機能が未使用なら「無効」"},
    {L"windows media center scheduler service", L"判断基準：メディアセンター機能が未使用なら「無効」"},
    {L"windows media center service launcher", L"判断基準：メディアセンター機能が未使用なら「無効」"},
    {L"windows media player network sharing service", L"判断基準：Windows Media Playerでのネット共有をしないなら「無効」"},
    {L"windows modules installer", L"判断基準：デフォルトの「手動」推奨。Windows Updateで使用される"},
    {L"windows search", L"判断基準：windows searchバーが不要なら「無効」"},
    {L"windows time", L"判断基準：自動で時刻調整してほしくないなら「無効」"},
    {L"windows update", L"判断基準：「自動」推奨"},
    {L"wired autoconfig", L"判断基準：無線LAN未使用なら「無効」"},
    {L"wlan autoconfig", L"判断基準：無線LAN未使用なら「無効」"},
    {L"workstation", L"判断基準：「Server」、「WebClient」を利用するなら「自動」。ファイル共有をしていないなら「無効」"},
};
// clang-format on

}  // namespace

std::span<const ServiceAdvice> AdviceTable() { return kAdvice; }

std::wstring_view LookupServiceAdvice(std::wstring_view display_name) {
    const std::wstring name = win::LowerCase(display_name);
    const auto* found = std::ranges::find(kAdvice, name, &ServiceAdvice::name);
    return found == std::end(kAdvice) ? kUnknownService : found->advice;
}

}  // namespace services
