// Makes the theme's search work in pages that are opened as files. Browsers refuse two things there: reading the index
// with a request, and starting a worker.
if (location.protocol === "file:") {
    // The index comes as a script, search/search_index.js. Version 9 of the theme loads it by itself; version 8 takes the
    // index from here, which loads it once the reader opens the search.
    window.__search = {
        index: new Promise(resolve => {
            const site = new URL(".", document.currentScript.src);
            function load() {
                removeEventListener("focusin", open);
                const script = document.createElement("script");
                script.src = new URL("search/search_index.js", site);
                script.onload = () => resolve(window.__index);
                document.head.append(script);
            }
            function open(event) {
                if (event.target.matches("[data-md-component=search-query]"))
                    load();
            }
            if (new URLSearchParams(location.search).has("q"))
                load();
            else
                addEventListener("focusin", open);
        })
    };

    // Runs the worker's script in an invisible frame of the page.
    window.Worker = class extends EventTarget {
        constructor(url) {
            super();
            const frame = document.createElement("iframe");
            frame.hidden = true;
            document.body.append(frame);
            this.scope = frame.contentWindow;
            this.scope.postMessage = data => Worker.send(this, data);
            this.loaded = new Promise(resolve => {
                const script = frame.contentDocument.createElement("script");
                script.src = url;
                script.onload = resolve;
                frame.contentDocument.body.append(script);
            });
        }
        postMessage(data) {
            this.loaded.then(() => Worker.send(this.scope, data));
        }
        static send(target, data) {
            target.dispatchEvent(new MessageEvent("message", {data: structuredClone(data)}));
        }
    };
}
