#pragma once

namespace qv::devhost {

/// The name of the function by which a document reaches the web view until `kPageScript` has taken it away.
inline constexpr char kPostBinding[] = "quorvantisDevhostPost";
/// The hidden member of `chrome.webview` that delivers a message, given as JSON text.
inline constexpr char kDeliverMember[] = "__devhostDeliver";

/// Gives every document its `chrome.webview` before its own scripts run. What it posts is "s" or "j" for a
/// string or JSON, the document's address, a line feed and the text.
inline constexpr char kPageScript[] = R"js((() => {
  const post = window.quorvantisDevhostPost;
  delete window.quorvantisDevhostPost;
  if (window !== window.top || !post || (window.chrome && window.chrome.webview)) return;
  const stringify = JSON.stringify, parse = JSON.parse;
  const target = new EventTarget();
  const define = (name, value) => Object.defineProperty(target, name, {value, enumerable: false});
  define('postMessage', message => {
    const json = stringify(message);
    if (json === undefined) throw new TypeError('The message is no JSON value');
    const isString = typeof message === 'string';
    post((isString ? 's' : 'j') + location.href + '\n' + (isString ? message : json));
  });
  define('__devhostDeliver', json =>
    void target.dispatchEvent(new MessageEvent('message', {data: parse(json), source: null})));
  window.chrome = window.chrome || {};
  window.chrome.webview = target;
})();)js";

}  // namespace qv::devhost
