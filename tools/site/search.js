// Search without a server. In pages that were opened from a folder a browser lets nobody fetch the index or start a worker: so the index
// comes as a script, when somebody begins to search, and the worker's script runs in a frame that nobody sees.
{
  const folder = new URL(".", document.currentScript.src);

  const load = (into, address) =>
    new Promise((done, failed) => {
      const script = into.createElement("script");
      script.src = address;
      script.onload = done;
      script.onerror = () => failed(new Error(`cannot load ${address}`));
      into.head.appendChild(script);
    });

  const searchBegins = new Promise((begun) => {
    if (new URLSearchParams(location.search).has("q")) begun();
    document.addEventListener("focusin", (event) => event.target.matches("[data-md-component=search-query]") && begun());
  });

  // Japanese has no blanks between its words: pages and questions are divided in the same way.
  const segmenter = window.Intl && Intl.Segmenter ? new Intl.Segmenter("ja", { granularity: "word" }) : null;
  const words = (text) => (segmenter ? Array.from(segmenter.segment(text), (part) => part.segment) : [text]);
  const divided = (text, mark) => text.replace(/[\u3041-\u30fe\u4e00-\u9fff]+/g, (run) => words(run).join(mark));
  const indexOf = ({ config, docs }) => ({
    config,
    docs: docs.map((doc) => ({ ...doc, title: divided(doc.title, "\u200b"), text: divided(doc.text, "\u200b") })),
  });

  // Under this name the theme looks for the index, which index.js leaves in wfinfoSearchIndex, and for what it asks with.
  window.__search = {
    index: searchBegins.then(() => load(document, new URL("index.js", folder))).then(() => indexOf(window.wfinfoSearchIndex)),
    transform: (query) => divided(query, " ").replace(/[+\-:^~*"]+/g, " ").trim(),
  };

  if (location.protocol === "file:") {
    // By this name the worker's script knows that it runs in a frame, where importScripts takes its time.
    window.IFrameWorker = class extends EventTarget {
      constructor(address) {
        super();
        const frame = document.createElement("iframe");
        frame.hidden = true;
        document.body.appendChild(frame);
        this.scope = frame.contentWindow;
        this.scope.importScripts = async (...scripts) => {
          for (const script of scripts) await load(frame.contentDocument, script);
        };
        this.scope.postMessage = (data) => this.dispatchEvent(new MessageEvent("message", { data }));
        this.ready = load(frame.contentDocument, new URL(address, location));
      }

      postMessage(data) {
        this.ready.then(() => this.scope.dispatchEvent(new MessageEvent("message", { data })));
      }
    };
    window.Worker = window.IFrameWorker;
  }
}
